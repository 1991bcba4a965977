#pragma once
/// \file
/// Where a command of analysis writes its tables, and what all such commands take.

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"
#include "mxlibDim/file_lock.h"

/// What a command of analysis works on and where its results go.
struct RunOptions {
    std::string session;
    std::string tables = "yes";  ///< yes: the command's own folder; no; or a folder
    bool force = false;
};

/// Adds them to `command`; `folder` is how its own folder is called behind the session's name.
void AddRunOptions(CLI::App& command, const std::string& folder, RunOptions* options);

/// The folder of tables of one run. What it writes stands in a folder of its own within, and takes
/// the place of an earlier run's tables when all is there: a run that fails leaves those as they
/// were.
class ResultFolder {
  public:
    /// `tables`, with yes for the folder `own`, which may hold tables by the names `all`. Makes the
    /// folder. Fails where tables of an earlier run stand in it, unless `force`, and where another
    /// run is at work.
    ResultFolder(const std::string& tables, const std::string& own, bool force,
                 std::initializer_list<const char*> all);
    ~ResultFolder();
    ResultFolder(const ResultFolder&) = delete;
    ResultFolder& operator=(const ResultFolder&) = delete;

    bool IsWanted() const { return !path_.empty(); }
    const std::string& path() const { return path_; }

    /// The path at which this run writes a table.
    std::string Table(const std::string& name);

    /// Writes settings.toml: the command as it stands. Then puts all tables in their places and
    /// takes away what an earlier run wrote and this one did not.
    void Finish(const CLI::App& command);
    /// The same with the text of settings.toml.
    void Finish(const std::string& settings);

  private:
    std::string path_;  ///< empty: no tables are wanted
    bool isNew_ = false;
    std::optional<FileLock> lock_;
    std::vector<std::string> all_;
    std::vector<std::string> written_;
};
