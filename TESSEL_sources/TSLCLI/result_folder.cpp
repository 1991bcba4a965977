#include "TSLCLI/result_folder.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>

#include "TSLCLI/failure.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "mxlibDim/replacement.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kSettings = "settings.toml";

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
        RefuseToOverwrite((fs::path(path_) / table).string(), force);
    std::error_code error;
    fs::create_directories(path_, error);
    if (error || !fs::is_directory(path_, error))
        FailRun(path_ + ": the folder for the tables cannot be made: give another by --tables");
}

std::string ResultFolder::Table(const std::string& name) {
    written_.push_back(name);
    return (fs::path(path_) / name).string();
}

void ResultFolder::Finish(const CLI::App& command) {
    if (!IsWanted()) return;
    const std::string path = Table(kSettings);
    FileReplacement settings(path.c_str(), nullptr);
    if (settings == nullptr) FailRun(path + ": the settings cannot be written there");
    std::fputs(SettingsOf(command).c_str(), settings);
    if (!settings.Commit()) FailRun(path + ": the settings could not be written whole");
    std::error_code ignored;
    for (const std::string& table : all_)
        if (std::find(written_.begin(), written_.end(), table) == written_.end())
            fs::remove(fs::path(path_) / table, ignored);
}
