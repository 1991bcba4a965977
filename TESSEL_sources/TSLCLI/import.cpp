// The command import: tables of a spreadsheet become a session.

#include <CLI/CLI.hpp>
#include <memory>

#include "TSLCLI/commands.h"
#include "TSLCLI/csv_writer.h"
#include "TSLCLI/data_set_assembly.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/findings.h"
#include "TSLCLI/new_session.h"
#include "TSLCLI/session.h"
#include "TSLCLI/summary.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLIFFMT/dialogue_data.h"
#include "TSLIFFMT/raw_tables.h"
#include "mxlibDim/file_path.h"

namespace {

constexpr const char* kTypesExt = "Types.csv";

struct ImportOptions {
    TableFiles files;
    ImportSettings settings;
    std::string session;
    bool dropUnmatched = false, dropEmpty = false, force = false;
};

void WriteTypes(const ImportTables& tables, const std::string& path) {
    CsvWriter table(path, {"OTU", "type"});
    std::vector<std::string_view> type;
    for (const int row : PlacesAmong(tables.otus, tables.types->rowNames)) {
        CellsOf(*tables.types, row, &type);
        table.Text(tables.types->rowNames[row]);
        table.Text(type[0]);
        table.EndRow();
    }
    table.Finish();
}

void Import(const ImportOptions& options) {
    const FileLock lock = StartNewSession(options.session, options.force);
    MakeSessionFileName(whichFormda, sessionName, formdaExt);
    const std::string typesFile = options.session + kTypesExt;
    if (!options.files.types.empty()) RefuseToOverwrite(typesFile, options.force);

    ImportTables tables = ReadImportTables(options.files, options.dropUnmatched);
    ForgetDataSet();
    const DataSetOfDialogue released;
    TakeCommunities(&tables, options.dropEmpty);
    const FullNames names = TakeOtherTables(tables, options.settings);
    RunEngine([&] { WriteDataSet(NameOf(PathOf(options.files.traits).filename()).c_str()); });
    FinishNewSession(names);
    if (tables.types) WriteTypes(tables, typesFile);

    TellSummary(options.session, names);
    if (tables.types) Tell("Types of the OTUs: on " + typesFile);
    Tell("Full names and labels: on " + options.session + kNamesExt);
    for (const std::string& finding : Findings(names)) Warn(finding);
}

}  // namespace

CommandAction AddImport(CLI::App& command) {
    const auto options = std::make_shared<ImportOptions>();
    TableFiles& files = options->files;
    ImportSettings& settings = options->settings;
    command.add_option("--traits", files.traits, "CSV of traits: OTUs in rows, traits in columns")
        ->type_name("FILE")
        ->required();
    command
        .add_option("--communities", files.communities,
                    "CSV of quantities: communities in rows, OTUs in columns")
        ->type_name("FILE")
        ->required();
    command
        .add_option("--environment", files.environment,
                    "CSV of the environment: communities in rows, variables in columns")
        ->type_name("FILE");
    command
        .add_option("--phylogeny", files.phylogeny,
                    "A tree in the Newick form, or CSV of a square matrix of distances")
        ->type_name("FILE");
    command.add_flag("--phylogeny-similarities", settings.areSimilarities,
                     "The matrix of the phylogeny holds similarities from 0 to 1");
    command
        .add_option("--types", files.types,
                    "CSV of two columns: OTUs and their types; checked and kept beside the "
                    "session as NAMETypes.csv")
        ->type_name("FILE");
    command.add_option("--session", options->session, "Name of the session to be made")
        ->type_name("NAME")
        ->required();
    command.add_flag("--drop-unmatched", options->dropUnmatched,
                     "Leave out, and list, what stands in one table only");
    command.add_flag("--drop-empty", options->dropEmpty,
                     "Leave out, and list, OTUs that occur nowhere and communities without OTU");
    const struct {
        const char* option;
        std::vector<std::string>* names;
        const char* help;
    } kinds[] = {
        {"--binary", &settings.kinds.binary, "Columns of two values, by name: a,b"},
        {"--nominal", &settings.kinds.nominal, "Columns of codes or words without order"},
        {"--ordinal", &settings.kinds.ordinal, "Columns of ranks"},
        {"--quantitative", &settings.kinds.quantitative, "Columns of quantities"},
    };
    for (const auto& kind : kinds)
        command.add_option(kind.option, *kind.names, kind.help)->type_name("NAMES");
    command
        .add_option("--trait-groups", settings.traitGroups,
                    "Groups of traits to be weighted as one: trait=group,trait=group")
        ->type_name("GROUPS");
    command.add_flag("--same-units", settings.sameUnits,
                     "The environmental variables are quantities of one unit: not standardised");
    command.add_flag("--force", options->force, "Replace an old session of this name");
    command.footer(
        "Rows and columns are matched by their names. Unless told otherwise numbers are "
        "quantitative,\n"
        "words nominal, two different values binary. Empty cells, NA and NaN are missing values, "
        "which\n"
        "only traits may have.");
    return [options] { Import(*options); };
}
