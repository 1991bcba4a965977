#pragma once
/// \file
/// Sessions of the command line: the files of the dialogue's sessions, in the working directory.

#include <string>

#include "mxlibDim/file_lock.h"

/// Whether there is such a file, as rank 0 sees it.
bool IsThere(const std::string& path);

/// Makes `name` the current session. Fails for a name that the dialogue would cut (more than 21
/// characters), that holds a blank or that is a path.
void NameSession(const std::string& name);

/// Locks the session that was named. Fails where another program works on it.
FileLock LockNamedSession();

/// Names it, locks it and loads its data set and its record as O of the main menu does. Fails, with
/// the file's name and what to do, where there is no such session, another program has it or its
/// files cannot be read. The lock is to be kept as long as the session's files are worked on.
FileLock OpenCommandSession(const std::string& name);

/// Fails unless `force` or no file of that name is there.
void RefuseToOverwrite(const std::string& path, bool force);
