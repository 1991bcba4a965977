#include "TSLCLI/settings_file.h"

#include <CLI/CLI.hpp>
#include <iterator>
#include <sstream>

#include "TSLCLI/analysis_options.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/settings_text.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/reading.h"
#include "mxlibPar/ranks.h"

namespace {

/// CLI11's reader and writer of settings, in the text of settings_text.h.
class SettingsFormat : public CLI::Config {
  public:
    explicit SettingsFormat(const CLI::App& app) : app_(app) {}

    std::string to_config(const CLI::App* command, bool /*default_also*/,
                          bool /*write_description*/, std::string /*prefix*/) const override {
        std::string text = "[" + command->get_name() + "]\n";
        for (const CLI::Option* option : command->get_options())
            if (option->get_configurable() && option->get_group() != kMachineOptions)
                text += option->get_single_name() + " = " + ValueOf(*option) + "\n";
        return text;
    }

    std::vector<CLI::ConfigItem> from_config(std::istream& input) const override {
        const std::string text{std::istreambuf_iterator<char>(input), {}};
        const std::string file = app_.get_config_ptr()->as<std::string>();
        std::vector<CLI::ConfigItem> read;
        for (const SettingsEntry& entry : ReadSettingsText(text, file)) {
            RequireOption(entry, file);
            // An empty list is what stands where nothing was given.
            if (!entry.values.empty()) read.push_back({entry.table, entry.key, entry.values});
        }
        return read;
    }

  private:
    static std::string ValueOf(const CLI::Option& option) {
        if (option.get_items_expected_max() > 1) return SettingsList(option.results());
        return SettingsValue(option.empty() ? option.get_default_str() : option.results().back());
    }

    void RequireOption(const SettingsEntry& entry, const std::string& file) const {
        const std::string place = file + ", line " + std::to_string(entry.line) + ": ";
        const auto commands = app_.get_subcommands([&](const CLI::App* command) {
            return entry.table == std::vector<std::string>{command->get_name()};
        });
        if (commands.empty())
            FailUsage(place + "settings stand under the name of their command: [analyse]");
        const CLI::Option* option = commands[0]->get_option_no_throw("--" + entry.key);
        if (option == nullptr) option = commands[0]->get_option_no_throw(entry.key);
        if (option == nullptr || !option->get_configurable())
            FailUsage(place + entry.table[0] + " has no setting '" + entry.key + "'");
        if (entry.values.size() > 1 && option->get_items_expected_max() <= 1)
            FailUsage(place + entry.key + " takes one value");
    }

    const CLI::App& app_;
};

}  // namespace

void AddSettingsFile(CLI::App& app) {
    app.set_config("--config", "", "Take from this file what the command line leaves open")
        ->type_name("FILE");
    app.config_formatter(std::make_shared<SettingsFormat>(app));
    app.allow_config_extras(CLI::config_extras_mode::error);
}

void TakeSettings(CLI::App& command, const std::string& file) {
    CLI::App& app = *command.get_parent();
    if (app.get_config_ptr()->count() > 0)
        FailUsage(file + ": give the settings either here or by --config");
    app.get_config_ptr()->add_result(file);
    std::istringstream text(ReadWhole(file));
    for (const CLI::ConfigItem& item : app.get_config_formatter()->from_config(text)) {
        if (item.parents[0] != command.get_name()) continue;
        CLI::Option* const option = command.get_option("--" + item.name);
        if (!option->empty()) continue;
        option->add_result(item.inputs);
        option->run_callback();
    }
}

std::vector<std::string> ArgumentsOfRank(int argc, const char* const* argv) {
    std::vector<std::string> arguments(argv, argv + argc);
    if (Ranks() == 1) return arguments;
    const std::string option = "--config";
    for (size_t k = 1; k < arguments.size(); k++) {
        const bool isJoined = arguments[k].starts_with(option + "=");
        if (!isJoined && (arguments[k] != option || k + 1 == arguments.size())) continue;
        std::string& argument = arguments[isJoined ? k : k + 1];
        const std::string file = isJoined ? argument.substr(option.size() + 1) : argument;
        FILE* const shared = OpenToRead(file.c_str(), "r");  // open to the end of the process
        if (shared == nullptr || IsFirstRank()) continue;
        argument = (isJoined ? option + "=" : "") + "/dev/fd/" + std::to_string(fileno(shared));
    }
    return arguments;
}

std::string SettingsOf(const CLI::App& command) {
    return command.config_to_str();
}

void SettleSeed(CLI::App& command) {
    CLI::Option* const seed = command.get_option("--seed");
    seed->clear();
    seed->add_result(std::to_string(rseed));
}
