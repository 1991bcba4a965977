// Any keystrokes as a whole run of the program, in a folder that holds raw files and a session: it
// exits, comes to rest or ends by an error, without a lost stream, and the raw files stay as they
// were.

#include <fcntl.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/menus.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/reading.h"
#include "one_file.h"
#include "support/good_session.h"

namespace {

/// The files of the good session, odd ones, a session `m` with everything in its data, and `s` and
/// `i`, with the same traits and variables, in the form of 2008 and the oldest one.
FilesByName MadeFiles() {
    FilesByName files = GoodFiles();
    files["g.txt"] = files["types.txt"];
    files["a.txt"] = "1 0 .5 .8 0 0 .3 -1 0\n";
    files["c.txt"] = "1 .4 .2 .4 1 .3 .2 .3 1\n";
    files["odd.txt"] = "nan inf -inf 1e38 1e-42 0 -999 x 1e400\n";
    files["short.txt"] = "1\n";
    files["mTrk.txt"] = "mFormda.txt\n07Jul17\n";
    files["mFormda.txt"] =
        "T\n3\na b c\n3 1 2\n0 0 0\n4 2 3\n4\np q r s\n5\n0 0 0 0\n0 0 0 0 0 0 0\n25Jun2016\n"
        "2.385 1 2\n1.175 0 1\n3.81 1 3\n0.62 0 3\n1.905 1 1\n\n"
        "3 0 1 0\n0 2 1 0\n4 1 0 2\n0 0 2 0\n1 0 0 3\n\n"
        "2\n97Sep08\n5\n3 1\nwater grazed\nE.txt\n1.5 2.25 0.75 3.1\n2 1 2 1\n"
        "2\nspp.txt\nPoa\nStipa\n1111\n1001\n10\n10\n01\n01\n01\nSMW 1\n"
        "1\n3\n0 .5 1 1 1\n.5 0 1 1 1\n1 1 0 .7 .7\n1 1 .7 0 .2\n1 1 .7 .2 0\n1\n1 1 2\n";
    const std::string head =
        "S\n3\na b c\n3 1 2\n0 0 0\n2 2 2\n4\nq x y z\n2\n0 0 0 0\n0 0 0 0 0 0 0\n";
    const std::string tail = "1 2 3 4\n0 1 0 1\n2\nspp.txt\nPoa\nBriza\n1010\n0101\n10\n01\n";
    files["sFormda.txt"] = head +
                           "18Jan2008\n1.5 0 1\n2.5 1 2\n\n1 0 2 0\n0 1 0 1\n\n"
                           "2\n97Sep08\n5\n3 1\nwater grazed\nS.txt\n" +
                           tail + "SMW 1\n0\n";
    files["iFormda.txt"] = head + "150001 1 0 2 0\n250102 0 1 0 1\n2\nwater grazed\nS.txt\n" +
                           tail + "Wed Jul  7 10:00:00 1997\n";
    return files;
}

/// Whether a file belongs to a session, which may write it afresh.
bool IsOfSession(const std::string& name) {
    return name.find("Formda.txt") != std::string::npos ||
           name.find("Trk.txt") != std::string::npos || name == "oldPrinda.txt";
}

const FilesByName kFiles = MadeFiles();

constexpr int kLongestWork = 200;  // reports of progress
constexpr std::size_t kLongestScript = 4096;

struct Ended {};
int work;

void CountWork(std::int64_t steps) {
    if ((work += steps) > kLongestWork) throw Ended{};
}

void RenewFolder() {
    for (const auto& entry : std::filesystem::directory_iterator("."))
        std::filesystem::remove_all(entry.path());
    for (const auto& [name, text] : kFiles) WriteInput(name.c_str(), text.data(), text.size());
}

void ExpectRawFilesUnharmed() {
    for (const auto& [name, text] : kFiles) {
        std::ifstream file(name);
        if (!IsOfSession(name) && std::string(std::istreambuf_iterator<char>(file), {}) != text)
            std::abort();
    }
}

/// The keystrokes with every number made small, so that a run asks for bounded work: at most two
/// digits, no exponent, no hexadecimal digits, nothing above 24, the last criterion of the ranking.
std::string Bounded(const std::uint8_t* data, std::size_t size) {
    std::string keys;
    int digits = 0;
    for (std::size_t i = 0; i < size && i < kLongestScript; i++) {
        char c = static_cast<char>(data[i]);
        if (std::isdigit(data[i])) {
            if (++digits > 2) continue;
            if (digits == 2 && keys.back() >= '2') {
                keys.back() = '2';
                c = std::min(c, '4');
            }
            keys.push_back(c);
            continue;
        }
        const bool extends = digits > 0 && std::strchr("eExXpP", c) != nullptr && c != '\0';
        keys.push_back(extends ? ' ' : c);
        digits = 0;
    }
    return keys + "\n";
}

int LowestFreeDescriptor() {
    const int descriptor = open("/dev/null", O_RDONLY);
    close(descriptor);
    return descriptor;
}

/// Everything as a new process has it.
void ForgetRun() {
    FreeGlobals2();
    nch = ncsm = tcst = nSpp = nenv = 0;
    hasPhylogeny = phylogenyMatrixType = 0;
    RenewPhylogeny();
    for (int** memberships : {&nestingMembershipOTUs, &partition_OTUs_Phyl}) {
        free1D(*memberships);
        *memberships = nullptr;
    }
    free1D(gSpareBlockPtr);
    gSpareBlockPtr = nullptr;
    FreeGlobals1();
    for (auto* name :
         {&whichTrack, &whichFormda, &whichPrinda, &whichHier, &whichStructures, &whichRndData})
        std::strcpy(*name, "NULL");
    std::strcpy(whichChorder, "NULL");
    sessionName[0] = sessionShortName[0] = tempName[0] = tempSession[0] = '\0';
    optmain = optmain1 = dirtyOrig = 0;
    temEnvQuant = temEnvQual = temEnvBin = hasTraitGroups = emptyReleves = 0;
    opt_struct = opt_ro = rese_opt = fuzzy = niter = includePhylogeny = 0;
    optRestrictPermutNullModel = 0;
    BealsIncludeOpt = twoTailedTestMantel = true;
    overfitFactorPCARegr = 2.0;
    work = 0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    processEndings.end = [](int) { throw Ended{}; };
    processEndings.rest = [] { throw Ended{}; };
    progressHook = CountWork;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    RenewFolder();
    const int free = LowestFreeDescriptor();
    std::string keys = Bounded(data, size);
    FILE* const kept = stdin;
    stdin = fmemopen(keys.data(), keys.size(), "r");
    if (stdin == nullptr) std::abort();
    SetInputFinished(false);
    try {
        mainInit();
    } catch (const Ended&) {
    }
    std::fclose(stdin);
    stdin = kept;
    ForgetRun();
    ExpectRawFilesUnharmed();
    if (LowestFreeDescriptor() != free) std::abort();
    return 0;
}
