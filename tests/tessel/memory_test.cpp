#include "TSLRESE/memory.h"

#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "TSLIF/settings_dialogue.h"
#include "mxlibDim/available_memory.h"
#include "support/matrices.h"
#include "support/text.h"
#include "tessel/in_process.h"

namespace {

double PeakMemory() {
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    return 1024.0 * double(used.ru_maxrss);
}

Rows RandomRows(int rows, int cols, double absent) {
    static std::mt19937 generator(20111);
    const Table<double> table = RandomTable<double>(rows, cols, 0.0, 1.0, generator, absent);
    Rows numbers;
    for (int i = 0; i < rows; i++) numbers.emplace_back(table[i], table[i] + cols);
    return numbers;
}

struct Memory : InProcess {
    /// A session of these sizes with three types, and its analysis.
    void Load(int OTUs, int communities, int traits, bool phylogeny) {
        FormdaText data{RandomRows(OTUs, traits, 0.0), RandomRows(OTUs, communities, 0.8),
                        RandomRows(communities, 2, 0.0)};
        if (phylogeny) data.phylogeny = "1\n3\n" + TextOf(RandomRows(OTUs, OTUs, 0.0));
        ASSERT_EQ(Open(FormdaOf(data)).raised, 0);
        std::strcpy(sessionName, "s");
        std::strcpy(whichTrack, "sTrk.txt");
        optmain = 'H';
        std::filesystem::remove("sPrinda.txt");
    }
    std::string Answers(const std::string& congruence) const {
        std::string types = "k ";
        for (int i = 0; i < tcst; i++) types += std::to_string(i % 3) + " ";
        return types + "1 3 0 2 7 " + congruence + " 1 y n\n";
    }
};

}  // namespace

TEST_F(Memory, IsToldWithinAThird) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer takes memory of its own";
#endif
    const struct {
        int OTUs, communities, traits;
        bool phylogeny;
        const char* congruence;
    } cases[] = {{350, 100, 3, true, "1 6"},
                 {350, 100, 3, true, "3"},
                 {400, 100, 20, false, "1 6"},
                 {300, 600, 3, false, "1 6"},
                 {250, 600, 3, true, "2"}};
    for (const auto& c : cases) {
        Load(c.OTUs, c.communities, c.traits, c.phylogeny);
        int pipes[2];
        ASSERT_EQ(pipe(pipes), 0);
        const std::string answers = Answers(c.congruence);
        malloc_trim(0);  // what was freed before would be used again
        if (fork() == 0) {
            const double before = PeakMemory();
            Typed(answers, IFHierarchicalAccum);
            const double used[] = {PeakMemory() - before, MemoryOfAnalysis(SizesOfAnalysis())};
            _exit(write(pipes[1], used, sizeof used) == sizeof used ? 0 : 1);
        }
        double used[2] = {};
        ASSERT_EQ(read(pipes[0], used, sizeof used), ssize_t(sizeof used));
        wait(nullptr);
        for (const int end : pipes) close(end);
        EXPECT_NEAR(used[1] / used[0], 1.0, 1.0 / 3)
            << c.OTUs << " " << c.communities << " " << c.congruence << " took " << used[0] / 1e6;
    }
}

TEST_F(Memory, IsToldWhenItIsMoreThanHalfOfWhatIsLeft) {
    static double available;
    availableMemoryHook = [] { return available; };
    for (const bool tells : {true, false}) {
        Load(3, 3, 2, false);
        available = tells ? 1000.0 : 1e9;
        EXPECT_EQ(Typed(Answers("2"), IFHierarchicalAccum).err,
                  tells ? "\nThis analysis takes about 0.0 GB of memory; 0.0 GB are free.\n" : "");
    }
    availableMemoryHook = nullptr;
}
