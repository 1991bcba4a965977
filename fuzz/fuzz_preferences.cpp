// Any text as the preferences file: it is refused or read, and what was read goes through the file
// once more unchanged; a report can be printed with it.

#include <fstream>
#include <iterator>

#include "TSLGLOB/settings.h"
#include "TSLIF2/preferences.h"
#include "mxlibOut/mxlibOut.h"
#include "one_file.h"

namespace {

/// The file that WritePreferences makes, less its time stamp.
std::string Written() {
    WritePreferences();
    std::ifstream file(TESSELPrefsName);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    return text.substr(0, text.find_last_of('\n', text.size() - 2));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InitGlobals();
    twoTailedTestMantel = false;  // as a reading leaves it
    WriteInput(TESSELPrefsName, data, size);
    if (!Survives(ReadPreferences)) return 0;
    double row[] = {1.0 / 3.0, -999.0, 1e300};
    double* const matrix[] = {row};
    PrintMatrix(stdout, 1, 3, matrix, sDigits, 0);
    const std::string text = Written();
    ReadPreferences();
    if (Written() != text) std::abort();
    return 0;
}
