// Any text as a formatted data file: it is refused or loads, and what loads can be written and read
// again with the same counts.

#include <array>
#include <cstring>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLIFFM2/formda.h"
#include "one_file.h"

namespace {

std::array<int, 7> CountsInMemory() {
    return {nch, ncsm, tcst, nenv, nSpp, phylogenyMatrixType, SMWSize};
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    std::strcpy(whichFormda, "dataFormda.txt");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteInput(whichFormda, data, size);
    if (!Survives([] { OpenFormda(1); })) return 0;
    const auto read = CountsInMemory();
    WriteFormda(tcst, whichFormda, dataName, csm_Float, cadat);
    // A text with a zero byte in it ends there, and one that is empty is no field of the file.
    const bool isText = size == 0 || std::memchr(data, '\0', size) == nullptr;
    const bool isReadAgain = Survives([] { OpenFormda(1); });
    if (isText && !(isReadAgain && CountsInMemory() == read)) std::abort();
    return 0;
}
