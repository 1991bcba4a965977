#include "TSLCLI/session.h"

#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/session_lock.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/track.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/text.h"
#include "mxlibPar/ranks.h"

bool IsThere(const std::string& path) {
    std::error_code ignored;
    return ShareNumber(std::filesystem::exists(PathOf(path), ignored) ? 1 : 0) != 0;
}

void NameSession(const std::string& name) {
    if (name.empty() || name.size() > kSessionNameLength)
        FailUsage("session '" + name + "': its name takes 1 to " +
                  std::to_string(kSessionNameLength) + " characters");
    if (name.find_first_of(" \t\r\n\f\v") != std::string::npos)
        FailUsage("session '" + name + "': its name holds no blank");
    if (name.find('/') != std::string::npos)
        FailUsage("session '" + name + "': its files stand in the working folder: go there first");
    volumeName[0] = '\0';
    CopyText(sessionShortName, kSessionNameLength, name.c_str());
    CopyText(sessionName, kFileNameLength, name.c_str());
    MakeSessionFileName(whichTrack, sessionName, trackExt);
}

FileLock LockNamedSession() {
    FileLock lock = LockSession();
    if (lock.IsTaken())
        FailRun(std::string("the session '") + sessionName +
                "' is open in another program: wait for its end");
    return lock;
}

FileLock OpenCommandSession(const std::string& name) {
    NameSession(name);
    if (!IsThere(whichTrack))
        FailRun(std::string(whichTrack) + ": there is no session '" + name +
                "' in this folder: make it with 'TESSEL import'");
    FileLock lock = LockNamedSession();
    bool hasData = false;
    RunEngine([&] { hasData = ReadDataFileName(); });
    if (!hasData)
        FailRun(std::string(whichTrack) + ": the session '" + name +
                "' has no data: give it some with 'TESSEL import'");
    if (!IsThere(whichFormda))
        FailRun(std::string(whichFormda) + ": the data of session '" + name +
                "' are not in this folder");
    RunEngine([] {
        OpenFormda(1);
        ReadTrack();
    });
    return lock;
}

void RefuseToOverwrite(const std::string& path, bool force) {
    if (!force && IsThere(path)) FailRun(path + ": is there already: give --force to replace it");
}
