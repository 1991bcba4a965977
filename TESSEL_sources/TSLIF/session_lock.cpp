#include "TSLIF/session_lock.h"

#include <string>

#include "TSLGLOB/session_files.h"

FileLock LockSession() {
    return FileLock(std::string(volumeName) + whichTrack + ".lock");
}
