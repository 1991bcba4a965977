#pragma once
/// \file
/// What the commands have in common that make a session out of other sessions: the data files of
/// those, and the files of the new one.

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
