#pragma once
/// \file
/// What the commands have in common that make a session: the files of the new one, which is locked,
/// and the data files of those that it is made of. These are not locked, as they are not by the
/// dialogue: many jobs may derive from one session at a time, its files are only ever replaced by
/// whole ones, and a table of names counts only for the data that it fits.

#include <string>

#include "TSLCLI/names.h"
#include "mxlibDim/file_lock.h"

/// The name of a session's data file. Fails where there is no such file.
std::string DataFileOf(const std::string& session);

/// Makes `session` the current session, locked while the result lives. Fails unless its files are
/// new or may be replaced, and while another program has it.
[[nodiscard]] FileLock StartNewSession(const std::string& session, bool force);

/// Behind the data file that has been written: the record and the table of names.
void FinishNewSession(const FullNames& names);

/// Tells what the new session holds.
void TellNewSession(const FullNames& names);
