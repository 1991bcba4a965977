#pragma once
/// \file
/// The commands, a file each. Each adds its options to `command` and gives the action that runs
/// once the whole command line has been understood.

#include <functional>

namespace CLI {
class App;
}

using CommandAction = std::function<void()>;

CommandAction AddImport(CLI::App& command);
CommandAction AddCheck(CLI::App& command);
CommandAction AddAnalyse(CLI::App& command);
CommandAction AddRank(CLI::App& command);
CommandAction AddSimulate(CLI::App& command);
CommandAction AddJoin(CLI::App& command);
CommandAction AddDerive(CLI::App& command);
CommandAction AddMerge(CLI::App& command);
CommandAction AddDialogue(CLI::App& command);
CommandAction AddDescribe(CLI::App& command);
