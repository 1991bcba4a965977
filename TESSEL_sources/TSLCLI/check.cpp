// The command check: what a session holds, and what looks wrong in it.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "TSLCLI/commands.h"
#include "TSLCLI/data_tables.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/findings.h"
#include "TSLCLI/session.h"
#include "TSLCLI/summary.h"
#include "TSLIFFMT/dialogue_data.h"
#include "mxlibDim/file_path.h"

namespace {

struct CheckOptions {
    std::string session, tables;
};

void Check(const CheckOptions& options) {
    const std::string& session = options.session;
    const FileLock lock = OpenCommandSession(session);
    const DataSetOfDialogue released;
    const FullNames names = ReadNames(session);
    TellSummary(session, names);
    std::vector<std::string> findings = Findings(names);
    const std::string table = session + kNamesExt;
    if (!names.isFromTable && std::filesystem::exists(PathOf(table)))
        findings.push_back(table + " has other labels than the data set: its names are not used");
    for (const std::string& finding : findings) std::printf("Looks wrong: %s\n", finding.c_str());
    if (findings.empty()) Tell("Nothing looks wrong");
    if (!options.tables.empty()) WriteDataTables(options.tables, names);
}

}  // namespace

CommandAction AddCheck(CLI::App& command) {
    const auto options = std::make_shared<CheckOptions>();
    command.add_option("session", options->session, "Name of the session")
        ->type_name("")
        ->required();
    command
        .add_option("--tables", options->tables,
                    "Write the data as they were understood, as CSV, to this folder")
        ->type_name("FOLDER")
        ->configurable(false);
    command.footer(
        "Whatever is found, the exit status is 0; findings begin with \"Looks wrong:\".");
    return [options] { Check(*options); };
}
