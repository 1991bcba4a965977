#include "TSLCLI/new_session.h"

#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/session.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/track.h"
#include "mxlibDim/file_path.h"

std::string DataFileOf(const std::string& session) {
    std::string file = session + formdaExt;
    if (session.empty() || session.size() > kOtherSessionNameLength ||
        !std::filesystem::is_regular_file(PathOf(file)))
        FailRun("there is no session " + session + " here: " + file +
                " is not in the working directory: go to its folder");
    return file;
}

FileLock StartNewSession(const std::string& session, bool force) {
    NameSession(session);
    FileLock lock = LockNamedSession();
    for (const char* ext : {formdaExt, trackExt, kNamesExt})
        RefuseToOverwrite(session + ext, force);
    return lock;
}

void FinishNewSession(const FullNames& names) {
    const EngineTalk talk = RunEngine([] { WriteTrack(0); });
    if (!talk.errors.empty()) FailRun(talk.errors + ": free the disk or choose another folder");
    WriteNames(sessionName, names);
}

void TellNewSession(const FullNames& names) {
    Tell("Session " + std::string(sessionName) + ": " + Counted(names.otus.size(), "OTU", "OTUs") +
         ", " + Counted(names.traits.size(), "trait", "traits") + ", " +
         Counted(names.communities.size(), "community", "communities") + ", " +
         Counted(names.variables.size(), "environmental variable", "environmental variables"));
}
