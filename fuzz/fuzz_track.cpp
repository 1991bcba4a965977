// Any text as the track file of a small data set: it is refused or read, the selections that it
// makes lie within their arrays, and the record can be written again.

#include <cstring>
#include <string_view>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/track.h"
#include "one_file.h"

namespace {

constexpr std::string_view kData =
    "T\n2\na b\n3 3\n0 0\n2 2\n3\np q r\n4\n0 0 0\n0 0 0 0 0 0 0\n25Jun2016\n"
    "1 2\n3 4\n5 6\n7 8\n1 2 3\n4 5 6\n7 8 9\n1 1 1\n0\n0\nSMW 1\n0\n0\n";

std::size_t sum;

/// Touches every entry that the selections reach.
void UseSelections() {
    if (grLabel == nullptr) return;
    for (int i = 0; i < nGroups; i++) sum += std::strlen(grLabel[i]);
    for (int i = 0; i < nCstGroups; i++) sum += std::strlen(grCstLabel[i]);
    for (int i = 0; i < ncsm; i++) sum ^= static_cast<unsigned>(groupRel[i]);
    for (int i = 0; i < tcst; i++) sum ^= static_cast<unsigned>(groupCst[i]);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    WriteInput("dataFormda.txt", kData.data(), kData.size());
    std::strcpy(whichTrack, "plotsTrk.txt");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FreeGlobals1();
    std::strcpy(whichFormda, "dataFormda.txt");
    OpenFormda(1);
    WriteInput(whichTrack, data, size);
    if (!Survives([] { ReadTrack(); })) return 0;
    UseSelections();
    WriteTrack(1);
    return 0;
}
