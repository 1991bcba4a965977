#include "TSLCLI/result_folder.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "TSLCLI/failure.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "mxlibDim/replacement.h"
#include "mxlibPar/ranks.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kSettings = "settings.toml";
constexpr const char* kUnderWay = "unfinished.tmp";  // the folder of a run's own

}  // namespace

void AddRunOptions(CLI::App& command, const std::string& folder, RunOptions* options) {
    command.add_option("session", options->session, "The session's name")
        ->type_name("")
        ->required();
    command
        .add_option("--tables", options->tables,
                    "Folder for the results as CSV; yes: SESSION" + folder)
        ->type_name("yes|no|FOLDER")
        ->capture_default_str();
    command.add_flag("--force", options->force, "Replace the results of an earlier run")
        ->configurable(false);
}

ResultFolder::ResultFolder(const std::string& tables, const std::string& own, bool force,
                           std::initializer_list<const char*> all)
    : path_(tables == "yes"  ? own
            : tables == "no" ? ""
                             : tables),
      all_(all.begin(), all.end()) {
    all_.emplace_back(kSettings);
    if (!IsWanted()) return;
    for (const std::string& table : all_)
        RefuseToOverwrite((fs::path(path_) / table).generic_string(), force);
    if (!IsFirstRank()) return;
    std::error_code error;
    const fs::path underWay = fs::path(path_) / kUnderWay;
    isNew_ = fs::create_directories(path_, error);
    if (!error) lock_.emplace(underWay.generic_string() + ".lock");
    if (lock_ && lock_->IsTaken())
        FailRun(path_ + ": another run writes its tables there: give another folder by --tables");
    // A run that was killed may have left its own.
    fs::remove_all(underWay, error);
    fs::create_directory(underWay, error);
    if (error)
        FailRun(path_ + ": the folder for the tables cannot be made: give another by --tables");
}

ResultFolder::~ResultFolder() {
    if (!IsWanted() || !IsFirstRank()) return;
    std::error_code ignored;
    fs::remove_all(fs::path(path_) / kUnderWay, ignored);
    lock_.reset();
    if (isNew_) fs::remove(path_, ignored);  // when nothing stands in it
}

std::string ResultFolder::Table(const std::string& name) {
    written_.push_back(name);
    return (fs::path(path_) / kUnderWay / name).generic_string();
}

void ResultFolder::Finish(const CLI::App& command) {
    Finish(SettingsOf(command));
}

void ResultFolder::Finish(const std::string& text) {
    if (!IsWanted()) return;
    const std::string path = Table(kSettings);
    FileReplacement settings(path.c_str(), nullptr);
    if (settings == nullptr) FailRun(path + ": the settings cannot be written there");
    std::fputs(text.c_str(), settings);
    if (!settings.Commit())
        FailRun(
            path +
            ": the settings could not be written whole: free the disk or choose another folder");
    if (!IsFirstRank()) return;
    for (const std::string& table : all_) {
        const bool isWritten = std::find(written_.begin(), written_.end(), table) != written_.end();
        const fs::path place = fs::path(path_) / table;
        std::error_code error;
        if (isWritten)
            fs::rename(fs::path(path_) / kUnderWay / table, place, error);
        else
            fs::remove(place, error);
        if (error) FailRun(place.generic_string() + ": " + error.message());
    }
}
