#pragma once
/// \file
/// What the commands have in common that make a session out of other sessions: the data files of
/// those, and the files of the new one.

#include <string>

#include "TSLCLI/names.h"

/// The name of a session's data file. Fails where there is no such file.
std::string DataFileOf(const std::string& session);

/// Makes `session` the current session. Fails unless its files are new or may be replaced.
void StartNewSession(const std::string& session, bool force);

/// Behind the data file that has been written: the record and the table of names.
void FinishNewSession(const FullNames& names);

/// Tells what the new session holds.
void TellNewSession(const FullNames& names);
