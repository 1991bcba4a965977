#pragma once
/// \file
/// Where a command of analysis writes its tables, and what all such commands take.

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"

/// What a command of analysis works on and where its results go.
struct RunOptions {
    std::string session;
    std::string tables = "yes";  ///< yes: the command's own folder; no; or a folder
    bool force = false;
};

/// Adds them to `command`; `folder` is how its own folder is called behind the session's name.
void AddRunOptions(CLI::App& command, const std::string& folder, RunOptions* options);

/// The folder of tables of one run.
class ResultFolder {
  public:
    /// `tables`, with yes for the folder `own`, which may hold tables by the names `all`. Makes the
    /// folder. Fails where tables of an earlier run stand in it, unless `force`.
    ResultFolder(const std::string& tables, const std::string& own, bool force,
                 std::initializer_list<const char*> all);

    bool IsWanted() const { return !path_.empty(); }
    const std::string& path() const { return path_; }

    /// The path of a table that this run writes.
    std::string Table(const std::string& name);

    /// Writes settings.toml: the command as it stands. Then takes away what an earlier run wrote
    /// and this one did not.
    void Finish(const CLI::App& command);

  private:
    std::string path_;  ///< empty: no tables are wanted
    std::vector<std::string> all_;
    std::vector<std::string> written_;
};
