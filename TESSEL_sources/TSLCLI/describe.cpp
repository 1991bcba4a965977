// The command describe: every command with its options, for programs that offer them in another
// way.

#include <CLI/CLI.hpp>
#include <cstdio>

#include "TSLCLI/commands.h"
#include "TSLRESE/analysis_statistics.h"

namespace {

std::string InQuotes(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted.push_back('\\');
        quoted += c == '\n' ? std::string("\\n") : std::string(1, c);
    }
    return quoted + "\"";
}

std::string Joined(const std::vector<std::string>& parts, const char* open, const char* close) {
    std::string text = open;
    for (std::size_t k = 0; k < parts.size(); k++) text += (k == 0 ? "" : ",") + parts[k];
    return text + close;
}

std::string Member(const char* name, const std::string& json) {
    return InQuotes(name) + ":" + json;
}

std::string Flag(bool is) {
    return is ? "true" : "false";
}

/// `takes` is what --help puts behind the option: "one|two" for words, "NUMBER", "a|b|FILE".
std::string OptionAsJson(const CLI::Option& option) {
    std::string takes = option.get_type_name();
    if (takes.starts_with(':')) takes.erase(0, 1);
    return Joined(
        {Member("name", InQuotes(option.get_single_name())),
         Member("help", InQuotes(option.get_description())), Member("takes", InQuotes(takes)),
         Member("default", InQuotes(option.get_default_str())),
         Member("required", Flag(option.get_required())),
         Member("flag", Flag(option.get_items_expected_max() == 0)),
         Member("list", Flag(option.get_items_expected_max() > 1)),
         Member("setting", Flag(option.get_configurable()))},
        "{", "}");
}

std::string CommandAsJson(const CLI::App& command) {
    std::vector<std::string> options;
    for (const CLI::Option* const option : command.get_options())
        if (option->get_single_name() != "help") options.push_back(OptionAsJson(*option));
    return Joined({Member("name", InQuotes(command.get_name())),
                   Member("help", InQuotes(command.get_description())),
                   Member("options", Joined(options, "[\n", "]"))},
                  "{", "}");
}

std::string MeaningsAsJson() {
    std::vector<std::string> meanings;
    for (const AnalysisStatistic& statistic : kAnalysisStatistics)
        meanings.push_back(Member(statistic.name, InQuotes(MeaningOf(statistic))));
    return Joined(meanings, "{", "}");
}

void Describe(const CLI::App& app) {
    std::vector<std::string> commands;
    for (const CLI::App* const command : app.get_subcommands({}))
        if (!command->get_group().empty()) commands.push_back(CommandAsJson(*command));
    std::printf("%s\n", Joined({Member("version", InQuotes(TESSEL_VERSION)),
                                Member("meanings", MeaningsAsJson()),
                                Member("commands", Joined(commands, "[\n", "]"))},
                               "{", "}")
                            .c_str());
}

}  // namespace

CommandAction AddDescribe(CLI::App& command) {
    command.group("");  // no help tells of it
    return [&command] { Describe(*command.get_parent()); };
}
