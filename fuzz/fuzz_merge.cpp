// Any text as the second data file of a merge: it is refused, or joined to a data set that can be
// written and read again.

#include <cstring>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/merge.h"
#include "one_file.h"

namespace {

const std::string kFirst =
    "F\n2\nheight form\n3 2\n0 0\n2 2\n2\na b\n2\n0 0\n0 0 0 0 0 0 0\n25Jun2016\n1.5 2\n3 4\n\n"
    "5 0\n6 7\n\n1\n97Sep08\n1\n3\nwater\nE.txt\n1.25 2.5\n2\nspp.txt\nPoa\nStipa\n11\n01\n10\n01\n"
    "SMW 1\n1\n3\n0 0.5\n0.5 0\n1\n1 2\n";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    std::strcpy(sessionName, "new");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteInput("firstFormda.txt", kFirst.data(), kFirst.size());
    WriteInput("secondFormda.txt", data, size);
    std::strcpy(whichFormda, "firstFormda.txt");
    OpenFormda(1);
    std::strcpy(dataName, whichFormda);
    int merged = 0;
    if (!Survives([&] { merged = MergeFormda("secondFormda.txt"); }) || merged == 0) return 0;
    const int otus = tcst, communities = ncsm;
    if (nch != 2 || otus < 2 || communities < 3 || phylogenyOTUs != otus) std::abort();
    // A text with a zero byte in it may leave a label or a name that is no field of the file.
    const bool isText = std::memchr(data, '\0', size) == nullptr;
    const bool isReadAgain = Survives([] { OpenFormda(1); });
    if (isText && !(isReadAgain && tcst == otus && ncsm == communities)) std::abort();
    return 0;
}
