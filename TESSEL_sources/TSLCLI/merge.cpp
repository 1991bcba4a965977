// Two sessions merged into one, as the dialogue merges them.

#include "TSLIFFM2/merge.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"
#include "TSLCLI/delimited_table.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/name_matching.h"
#include "TSLCLI/names.h"
#include "TSLCLI/new_session.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/dialogue_data.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/text.h"

namespace {

struct Options {
    std::vector<std::string> from;
    std::string session;
    bool force = false;
};

/// What merging needs of a session, beside its data.
struct Source {
    std::string file;
    FullNames names;
};

/// Leaves the data set in memory.
Source OpenSourceOfMerge(const std::string& session) {
    Source source = {DataFileOf(session), {}};
    CopyText(whichFormda, kFileNameLength, source.file.c_str());
    RunEngine([] { OpenFormda(1); });
    source.names = ReadNames(session);
    return source;
}

/// The data file in the form of 2008, which merging reads: the newest differs from it up to the
/// phylogeny, where merging stops reading, by the version word alone.
std::string InFormOf2008(const std::string& file) {
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    std::string form = text.str();
    const std::string newest = std::string("\n") + kFormdaVersion;
    const std::size_t at = form.find(newest);
    if (at != std::string::npos) form.replace(at + 1, newest.size() - 1, kFormdaVersion2008);
    return form;
}

/// Joins the second file's data set to the one in memory and writes it; the OTUs that are left.
Selection Join(const Source& first, const Source& second) {
    const std::string text = InFormOf2008(second.file);
    CopyText(dataName, kTitleLength, first.file.c_str());
    Selection otus;
    bool merged = false;
    const EngineTalk talk = RunEngine([&] {
        // The readers ask a file for its size.
        FILE* const stream = OpenTemporary();
        if (stream == nullptr) RaiseError(kFailedOpening);
        std::fwrite(text.data(), 1, text.size(), stream);
        std::rewind(stream);
        merged = MergeOpenFormda({stream, second.file.c_str()}, &otus) == 1;
    });
    if (!merged) FailRun(first.file + " and " + second.file + " cannot be merged: " + talk.screen);
    if (!talk.screen.empty()) Warn(talk.screen);
    return otus;
}

/// The names of both. One that is in both is told apart by the second session's name.
Names Joined(const Names& first, const Names& second, const std::string& secondSession) {
    Names joined = first;
    const std::vector<int> places = PlacesAmong(second, first);
    for (std::size_t i = 0; i < second.size(); i++)
        joined.push_back(places[i] < 0 ? second[i] : second[i] + " (" + secondSession + ")");
    return joined;
}

void Merge(const Options& o) {
    for (const std::string& source : o.from)
        if (source == o.session) FailUsage("--session must name another session than --from");
    const DataSetOfDialogue released;
    const Source second = OpenSourceOfMerge(o.from[1]);
    const Source first = OpenSourceOfMerge(o.from[0]);
    if (first.names.communities.size() != second.names.communities.size())
        FailRun(
            "merging records the OTUs of the second session under the communities of the "
            "first, one by one, and " +
            first.file + " has " + std::to_string(first.names.communities.size()) + ", " +
            second.file + " " + std::to_string(second.names.communities.size()) +
            " communities: derive sessions with as many first");
    const FileLock lock = StartNewSession(o.session, o.force);
    FullNames names = first.names;
    const Selection otus = Join(first, second);
    names.otus = Picked(Joined(first.names.otus, second.names.otus, o.from[1]), otus);
    names.communities = Joined(first.names.communities, second.names.communities, o.from[1]);
    Warn("the quantities of the OTUs of " + o.from[1] + " stand under the communities of " +
         o.from[0] + ", in their order; the communities of " + o.from[1] + " hold no OTUs");
    FinishNewSession(names);
    TellNewSession(names);
}

}  // namespace

CommandAction AddMerge(CLI::App& command) {
    const auto o = std::make_shared<Options>();
    command
        .add_option("--from", o->from,
                    "The two sessions, of the same traits and variables in the same order")
        ->type_name("NAME")
        ->expected(2)
        ->required();
    command.add_option("--session", o->session, "Name of the new session")
        ->type_name("NAME")
        ->required();
    command.add_flag("--force", o->force, "Replace a session of that name");
    return [o] { Merge(*o); };
}
