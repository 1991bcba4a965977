// The command join: the tables of the parts of a simulation, summed to those of the whole.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"
#include "TSLCLI/delimited_table.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/result_folder.h"
#include "TSLCLI/settings_text.h"
#include "TSLCLI/simulation_tables.h"
#include "TSLIF/simulation/evaluation.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/real_text.h"

namespace {

struct Options {
    std::vector<std::string> folders;
    std::string tables = "yes";
    bool force = false;
};

/// The settings of a run of simulate.
struct PartSettings {
    std::string file;
    std::string text;
    std::vector<SettingsEntry> entries;
    SimulationPart part;
};

std::string PlaceOf(const PartSettings& settings, const SettingsEntry& entry) {
    return settings.file + ", line " + std::to_string(entry.line) + ": ";
}

/// The setting of the name, with one value.
const SettingsEntry& EntryOf(const PartSettings& settings, std::string_view key) {
    for (const SettingsEntry& entry : settings.entries)
        if (entry.key == key && entry.values.size() == 1 &&
            entry.table == std::vector<std::string>{"simulate"})
            return entry;
    FailRun(settings.file + ": has no setting " + std::string(key) +
            " of simulate: give folders of tables of 'TESSEL simulate --part'");
}

PartSettings ReadPartSettings(const std::string& folder) {
    PartSettings settings;
    settings.file = NameOf(PathOf(folder) / "settings.toml");
    settings.text = ReadWhole(settings.file);
    settings.entries = ReadSettingsText(settings.text, settings.file);
    const SettingsEntry& part = EntryOf(settings, "part");
    settings.part = PartOf(part.values[0]);
    if (settings.part.parts == 0)
        FailRun(PlaceOf(settings, part) + part.values[0] + " is no part: run it again");
    return settings;
}

/// What parts of one study may differ in.
bool IsOfPart(const SettingsEntry& entry) {
    return entry.key == "part" || entry.key == "tables";
}

std::string ValuesOf(const SettingsEntry& entry) {
    return entry.values.size() == 1 ? entry.values[0] : SettingsList(entry.values);
}

void RequireSameStudy(const PartSettings& first, const PartSettings& other) {
    const std::string remedy = ": join parts of one study, of the same program";
    if (first.entries.size() != other.entries.size())
        FailRun(other.file + ": has other settings than " + first.file + remedy);
    for (std::size_t k = 0; k < first.entries.size(); k++) {
        const SettingsEntry& a = first.entries[k];
        const SettingsEntry& b = other.entries[k];
        if (a.table != b.table || a.key != b.key || (a.values != b.values && !IsOfPart(a)))
            FailRun(PlaceOf(other, b) + b.key + " is " + ValuesOf(b) + ", and " + first.file +
                    " has " + a.key + " = " + ValuesOf(a) + remedy);
    }
    if (first.part.parts != other.part.parts)
        FailRun(PlaceOf(other, EntryOf(other, "part")) + "one of " +
                std::to_string(other.part.parts) + " parts, and " + first.file + " is one of " +
                std::to_string(first.part.parts) + remedy);
}

/// Each part once.
void RequireAllParts(const std::vector<PartSettings>& all) {
    const int parts = all[0].part.parts;
    std::vector<const PartSettings*> found(static_cast<std::size_t>(parts));
    const auto name = [&](std::size_t k) {
        return std::to_string(k + 1) + "/" + std::to_string(parts);
    };
    for (const PartSettings& settings : all) {
        const auto k = static_cast<std::size_t>(settings.part.part - 1);
        if (found[k] != nullptr)
            FailRun(PlaceOf(settings, EntryOf(settings, "part")) + "the part " + name(k) +
                    " stands in " + found[k]->file + " too: give it once");
        found[k] = &settings;
    }
    for (std::size_t k = 0; k < found.size(); k++)
        if (found[k] == nullptr)
            FailRun("the part " + name(k) + " is missing: run it with --part " + name(k) +
                    " and give its folder too");
}

/// A whole number or a number in full that stands in a setting or a cell.
template <class T>
bool IsNumber(std::string_view text, T* number) {
    return ReadWholeNumber(text, number);
}

template <class T>
T NumberOf(const PartSettings& settings, const char* key) {
    const SettingsEntry& entry = EntryOf(settings, key);
    T number = 0;
    if (!IsNumber(entry.values[0], &number) || !(number >= 0))
        FailRun(PlaceOf(settings, entry) + entry.values[0] + " is no number: run the part again");
    return number;
}

/// Value and P of each statistic, by data sets.
using DataSets = std::vector<std::vector<double>>;

/// Enters the data sets of the part, which its table has to hold in their order.
void ReadStatistics(const PartSettings& settings, DataSets* dataSets) {
    const DelimitedTable table =
        ReadDelimitedTable(NameOf(PathOf(settings.file).replace_filename("statistics.csv")));
    const std::string remedy = ": run the part again";
    if (!std::equal(table.columnNames.begin(), table.columnNames.end(),
                    std::begin(kStatisticsHeader) + 1, std::end(kStatisticsHeader)))
        FailRun(table.file + ", line 1: is no header of statistics of data sets" + remedy);
    const int rows = static_cast<int>(table.rowNames.size());
    std::vector<std::string_view> cells;
    int row = 0;
    for (std::size_t n = settings.part.part; n <= dataSets->size(); n += settings.part.parts)
        for (int k = 0; k < kRatedStatistics; k++, row++) {
            const std::string expected =
                "data set " + std::to_string(n) + ", " + NameOfRated(k) + " with value and P";
            if (row == rows) FailRun(table.file + ": ends before " + expected + remedy);
            CellsOf(table, row, &cells);
            double value = 0, P = 0;
            if (table.rowNames[row] != std::to_string(n) || cells[0] != NameOfRated(k) ||
                !IsNumber(cells[1], &value) || !IsNumber(cells[2], &P))
                FailRun(table.file + ", line " + std::to_string(table.lines[row]) +
                        ": is not the expected " + expected + remedy);
            (*dataSets)[n - 1].insert((*dataSets)[n - 1].end(), {value, P});
        }
    if (row < rows)
        FailRun(table.file + ", line " + std::to_string(table.lines[row]) +
                ": comes after the last data set of the part" + remedy);
}

/// The settings of the undivided run.
std::string SettingsOfWhole(const PartSettings& part, const std::string& tables) {
    std::string text;
    int line = 0;
    for (std::size_t from = 0; from < part.text.size();) {
        const std::size_t end = std::min(part.text.find('\n', from), part.text.size() - 1) + 1;
        line++;
        const auto entry =
            std::find_if(part.entries.begin(), part.entries.end(),
                         [&](const SettingsEntry& e) { return e.line == line && IsOfPart(e); });
        if (entry == part.entries.end())
            text += part.text.substr(from, end - from);
        else
            text += entry->key + " = " + SettingsValue(entry->key == "part" ? kWholeRun : tables) +
                    "\n";
        from = end;
    }
    return text;
}

void Join(const Options& o) {
    std::vector<PartSettings> parts;
    for (const std::string& folder : o.folders) parts.push_back(ReadPartSettings(folder));
    for (const PartSettings& part : parts) RequireSameStudy(parts[0], part);
    RequireAllParts(parts);
    const auto alpha = NumberOf<double>(parts[0], "alpha");
    DataSets dataSets(static_cast<std::size_t>(NumberOf<int>(parts[0], "data-sets")));
    for (const PartSettings& part : parts) ReadStatistics(part, &dataSets);

    ResultFolder folder(o.tables, kSimulatedTables, o.force, kSimulationTables);
    std::optional<SimulationStatistics> statistics;
    if (folder.IsWanted()) statistics.emplace(folder.Table("statistics.csv"));
    std::vector<int> rejections(kRatedStatistics);
    for (std::size_t n = 0; n < dataSets.size(); n++) {
        for (std::size_t k = 0; k < kRatedStatistics; k++)
            rejections[k] += IsRejected(dataSets[n][2 * k + 1], alpha) ? 1 : 0;
        if (statistics) statistics->Add(static_cast<int>(n) + 1, dataSets[n]);
    }
    if (statistics) statistics->Finish();
    TellRates(rejections, static_cast<int>(dataSets.size()), alpha,
              folder.IsWanted() ? folder.Table("rates.csv") : "");
    folder.Finish(SettingsOfWhole(parts[0], o.tables));
    if (folder.IsWanted()) Tell("Tables: " + folder.path());
}

}  // namespace

CommandAction AddJoin(CLI::App& command) {
    const auto o = std::make_shared<Options>();
    command
        .add_option("folders", o->folders,
                    "Folders of tables of all parts, as 'TESSEL simulate --part' wrote them")
        ->type_name("FOLDER")
        ->configurable(false)
        ->required();
    command
        .add_option("--tables", o->tables,
                    std::string("Folder for the tables of the whole; yes: ") + kSimulatedTables)
        ->type_name("yes|no|FOLDER")
        ->capture_default_str();
    command.add_flag("--force", o->force, "Replace the tables that are there")->configurable(false);
    return [o] { Join(*o); };
}
