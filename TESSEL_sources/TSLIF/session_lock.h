#pragma once
/// \file
/// One program at a time works on a session.

#include "mxlibDim/file_lock.h"

/// Locks the session whose track file is whichTrack, by a file beside it. When another program has
/// the session, says so on standard error and rings the bell; the lock IsTaken then.
FileLock LockSession();
