// A session derived from another one: what the dialogue asks, by names.

#include "TSLIFFMT/derive.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/names.h"
#include "TSLCLI/new_communities.h"
#include "TSLCLI/new_session.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFMT/dialogue_data.h"
#include "mxlibDim/text.h"

namespace {

struct Options {
    std::string from, session;
    Names traits, otus, communities, variables;  ///< empty: all
    NewCommunities made;
    bool trims = false;
    bool force = false;
};

/// The places of the wanted items in the order in which they are wanted; all without any.
Selection Chosen(const char* option, const char* what, const Names& wanted, const Names& names,
                 const char* const* labels) {
    Selection chosen(names.size());
    std::iota(chosen.begin(), chosen.end(), 0);
    if (wanted.empty()) return chosen;
    return PlacesOfOption(option, what, wanted, names, labels);
}

std::vector<FullNames::Codes> CodesOf(const std::vector<FullNames::Codes>& codes,
                                      const Names& names) {
    std::vector<FullNames::Codes> kept;
    for (const std::string& name : names)
        for (const FullNames::Codes& table : codes)
            if (table.name == name) kept.push_back(table);
    return kept;
}

void Derive(const Options& o) {
    if (o.session == o.from) FailUsage("--session must name another session than --from");
    const std::string source = DataFileOf(o.from);
    const FileLock lock = StartNewSession(o.session, o.force);
    CopyText(whichFormda, kFileNameLength, source.c_str());
    CopyText(tempSession, kFileNameLength, o.from.c_str());
    const DataSetOfDialogue released;
    const EngineTalk opening = RunEngine(OpenSource);
    if (!opening.errors.empty()) Warn("the record of " + o.from + " is damaged: " + opening.errors);
    FullNames names = ReadNames(o.from);
    Derivation derivation;
    derivation.traits = Chosen("--traits", "trait", o.traits, names.traits, chLabel);
    derivation.otus = Chosen("--otus", "OTU", o.otus, names.otus, nullptr);
    derivation.communities =
        Chosen("--communities", "community", o.communities, names.communities, reLabel);
    derivation.variables =
        Chosen("--variables", "variable", o.variables, names.variables, envLabel);
    derivation.trims = o.trims;
    if (!o.communities.empty()) derivation.communityOption = CommunityOption::kSelect;
    names.variables = Picked(names.variables, derivation.variables);
    names.communities = SettleNewCommunities(o.made, names, &derivation);
    bool made = false;
    RunEngine([&] { made = DeriveDataSet(&derivation); });
    if (!made) FailRun("no OTU occurs in the communities that are kept: keep others");
    names.traits = Picked(names.traits, derivation.traits);
    names.otus = Picked(names.otus, derivation.otus);
    names.traitCodes = CodesOf(names.traitCodes, names.traits);
    // Changes of a nominal variable are no codes any more.
    const bool changes = derivation.communityOption == CommunityOption::kChange;
    names.variableCodes =
        changes ? std::vector<FullNames::Codes>() : CodesOf(names.variableCodes, names.variables);
    if (emptyReleves > 0)
        Warn(std::to_string(emptyReleves) + " communities of " + o.session + " are empty");
    FinishNewSession(names);
    TellNewSession(names);
}

}  // namespace

CommandAction AddDerive(CLI::App& command) {
    const auto o = std::make_shared<Options>();
    command.add_option("--from", o->from, "Session to take the data from")
        ->type_name("NAME")
        ->required();
    command.add_option("--session", o->session, "Name of the new session")
        ->type_name("NAME")
        ->required();
    const auto addNames = [&command](const char* name, Names* names, const std::string& what) {
        return command.add_option(name, *names, what + "; all without it")->type_name("NAMES");
    };
    addNames("--traits", &o->traits,
             "Traits to keep, in their new order, by names or labels parted by commas");
    addNames("--otus", &o->otus, "OTUs to keep, in their new order, by names");
    auto* const communities = addNames("--communities", &o->communities,
                                       "Communities to keep, likewise by names or labels");
    addNames("--variables", &o->variables, "Environmental variables to keep, likewise");
    AddNewCommunities(command, communities, &o->made);
    command.add_flag("--trim", o->trims, "Leave out OTUs that occur in none of the communities");
    command.add_flag("--force", o->force, "Replace a session of that name");
    return [o] { Derive(*o); };
}
