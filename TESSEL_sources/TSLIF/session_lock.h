#pragma once
/// \file
/// One program at a time works on a session.

#include "mxlibDim/file_lock.h"

/// Locks the session whose track file is whichTrack, by a file beside it. The lock IsTaken when
/// another program has the session.
FileLock LockSession();
