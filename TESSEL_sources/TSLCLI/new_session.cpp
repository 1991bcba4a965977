#include "TSLCLI/new_session.h"

#include <filesystem>

#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/session.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/track.h"

std::string DataFileOf(const std::string& session) {
    std::string file = session + formdaExt;
    if (session.empty() || session.size() > kOtherSessionNameLength ||
        !std::filesystem::is_regular_file(file))
        FailRun("there is no session " + session + " here: " + file +
                " is not in the working directory");
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
    const auto count = [](const std::vector<std::string>& items, const char* what) {
        return std::to_string(items.size()) + " " + what;
    };
    Tell("Session " + std::string(sessionName) + ": " + count(names.otus, "OTUs, ") +
         count(names.traits, "traits, ") + count(names.communities, "communities, ") +
         count(names.variables, "environmental variables"));
}
