// Any text as a settings file: it is refused with a line, or what it sets reads back as written;
// the command it is given to runs or is refused.

#include "TSLCLI/command_line.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/settings_text.h"
#include "iflibG/iflibG.h"
#include "one_file.h"
#include "support/formda_text.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void LookAt(std::string_view text) {
    for (const SettingsEntry& entry : ReadSettingsText(text, "in.toml")) {
        const auto again = ReadSettingsText("k = " + SettingsList(entry.values), "again");
        Require(again.size() == 1 && again[0].values == entry.values);
    }
}

std::int64_t steps = 0;

/// A run may be asked to go on for ever.
void BoundRun(std::int64_t more) {
    if ((steps += more) > 20) FailRun("long enough");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    FormdaText data;
    data.B = {{1, 4, 2}, {2, 1, 9}, {5, 2, 1}, {3, 8, 4}};
    data.W = {{3, 0, 1}, {0, 2, 4}, {1, 1, 0}, {6, 0, 2}};
    data.E = {{1, 2}, {4, 3}, {2, 7}};
    data.traitLabels = "a b c";
    const std::string formda = FormdaOf(data), track = "sFormda.txt\n07Jul17\n";
    WriteInput("sFormda.txt", formda.data(), formda.size());
    WriteInput("sTrk.txt", track.data(), track.size());
    WriteInput("types.txt", "1 1 2 2\n", 8);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteInput("in.toml", data, size);
    try {
        LookAt({reinterpret_cast<const char*>(data), size});
    } catch (const CommandFailure& failure) {
        Require(failure.status == kWrongUsage && failure.what()[0] != '\0');
    }
    progressHook = BoundRun;
    for (const char* command : {"analyse", "rank"}) {
        steps = 0;
        const char* const arguments[] = {"TESSEL",  command,    "s",  "--config", "in.toml",
                                         "--quiet", "--tables", "no", "--force"};
        RunCommandLine(static_cast<int>(std::size(arguments)), arguments);
    }
    return 0;
}
