#include "TSLIF/session_lock.h"

#include <cstdio>
#include <string>

#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"

FileLock LockSession() {
    FileLock lock(std::string(volumeName) + whichTrack + ".lock");
    if (lock.IsTaken()) {
        std::fprintf(stderr, "\nsession %s is in use by another program \n", sessionName);
        std::fputc('\a', stdout);
    }
    return lock;
}
