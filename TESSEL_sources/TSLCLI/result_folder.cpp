#include "TSLCLI/result_folder.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "TSLCLI/failure.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "mxlibDim/file_path.h"
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
    for (const std::string& table : all_) RefuseToOverwrite(NameOf(PathOf(path_) / table), force);
    if (!IsFirstRank()) return;
    std::error_code error;
    const fs::path underWay = PathOf(path_) / kUnderWay;
    isNew_ = fs::create_directories(PathOf(path_), error);
    if (!error) lock_.emplace(NameOf(underWay) + ".lock");
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
    fs::remove_all(PathOf(path_) / kUnderWay, ignored);
    lock_.reset();
    if (isNew_) fs::remove(PathOf(path_), ignored);  // when nothing stands in it
}

std::string ResultFolder::Table(const std::string& name) {
    written_.push_back(name);
    return NameOf(PathOf(path_) / kUnderWay / name);
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
        const fs::path place = PathOf(path_) / table;
        std::error_code error;
        if (isWritten)
            fs::rename(PathOf(path_) / kUnderWay / table, place, error);
        else
            fs::remove(place, error);
        if (error) FailRun(NameOf(place) + ": " + error.message());
    }
}
