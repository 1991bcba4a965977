#include "TSLIF2/preferences.h"

#include <signal.h>
#include <sys/resource.h>

#include <memory>
#include <tuple>

#include "TSLIFFM2/track.h"
#include "mxlibOut/mxlibOut.h"
#include "support/text.h"
#include "tessel/in_process.h"

namespace {

namespace fs = std::filesystem;

const std::string kFile =
    "18Nov2016\n0\n0.000000\n0.000000\n0\n0.000000\n0.000000\n1\nn\n0\n0.000000\n0.000000\n3\n"
    "2147483647\n6\nn\ny\nn\n0\n0\n1\n0\n1.5\n1\n0\n";
const std::string kScreen =
    "\n\nPREFERENCES" + std::string(59, ' ') + "\n" + std::string(70, '-') +
    "\nSet preferences of: \n   F  output files \n   G  Gower index\n   R  Rao entropy\n"
    "   B  Beals smoothing\n   O  PCA regression\n"
    "   T  permutaton tests based on Mantel correlations\n   C  return to main menu \n"
    "Type option: ";

struct Preferences : InProcess {
    ConsoleRun Read(const std::string& text) {
        folder_.Write(TESSELPrefsName, text);
        return Typed("", ReadPreferences);
    }

    /// The file less its time stamp.
    std::string Written() {
        const std::string text = folder_.Read(TESSELPrefsName);
        return text.substr(0, text.find_last_of('\n', text.size() - 2) + 1);
    }
};

}  // namespace

TEST_F(Preferences, AnswersHoldAtOnceAndInTheFile) {
    const ConsoleRun run =
        Typed("f\n3\ny\nm\ng\nn\nr\nn\ny\nb\nn\no\n0.5 1.5\nt\ny\nc\n", SetPreferences);
    EXPECT_EQ(run.err, "\nIncorrect input = 0.5. Reenter.\nAccepted input: 1 to 3.40282e+38\n");
    EXPECT_EQ(Count(run.out, kScreen), 8);
    EXPECT_EQ(Ints({sDigits, BealsIncludeOpt, twoTailedTestMantel}), Ints({3, 0, 1}));
    EXPECT_EQ(Written(), kFile);
    Typed("F 0 n G y R y n B y O 2 T n C", SetPreferences);
    EXPECT_EQ(Written(), Replaced(kFile, "3\n2147483647\n6\nn\ny\nn\n0\n0\n1\n0\n1.5\n1",
                                  "6\n2147483647\n6\nn\nn\nn\n1\n1\n0\n1\n2\n0"));
}

TEST_F(Preferences, EveryFieldComesBackButTheTest) {
    const std::string other =
        "18Nov2016\n11\n1.500000\n2.500000\n12\n3.500000\n4.500000\n13\ny\n14\n5.500000\n6.500000\n"
        "15\n16\n17\ny\ny\ny\n0\n0\n1\n0\n2.25\n1\n18\n";
    ASSERT_EQ(Read(other + "no stamp").err, "");
    EXPECT_EQ(Ints({sDigits, maxColsPrint, twoTailedTestMantel}), Ints({15, 16, 0}));
    WritePreferences();
    EXPECT_EQ(Written(), Replaced(other, "2.25\n1", "2.25\n0"));
    Read(Replaced(Replaced(other, "2.25", "-nan"), "2.500000", "-nan"));
    WritePreferences();
    EXPECT_EQ(Count(Written(), "\nnan\n"), 2);
    // What cannot be a letter is skipped.
    EXPECT_EQ(Read(Replaced(other, "13\ny", "13\nxN")).err,
              "\nIncorrect input = x. Reenter.\nAccepted input: y n\n");
    EXPECT_EQ(drawProfPtsOpt, 'n');
}

TEST_F(Preferences, FilesThatAreNoneOfThisVersionAndCuts) {
    for (const std::string text : {"", "18Nov2015\n1\n", "18Nov20167\n1\n", "\n\n"})
        EXPECT_EQ(Read(text).raised, 0) << text;
    EXPECT_EQ(Ints({sDigits, isHierarchicalPref}), Ints({6, 0}));
    for (std::size_t cut = kFile.find('\n'); cut + 2 < kFile.size();
         cut = kFile.find('\n', cut + 1)) {
        const ConsoleRun run = Read(kFile.substr(0, cut));
        EXPECT_EQ(run.raised, 2) << cut;
        EXPECT_EQ(run.err, "\nfile TESSEL.prf ");
    }
    EXPECT_EQ(Read(Replaced(kFile, "1.5\n1", "1.5\nx")).raised, 2);
}

// A disk that fills up cost the file that was there.
TEST_F(Preferences, OutputThatFailsLeavesTheOldFiles) {
    std::strcpy(whichTrack, "plotsTrk.txt");
    ASSERT_EQ(Open(FormdaOf({Rows(4, {1, 2}), Rows(4, {1, 2, 3})})).raised, 0);
    const auto writeData = [] { WriteFormda(tcst, whichFormda, dataName, csm_Float, cadat); };
    const std::tuple<const char*, void (*)(), int, const char*> cases[] = {
        {TESSELPrefsName, WritePreferences, 3, ""},
        {whichFormda, writeData, 3, ""},
        {whichTrack, [] { WriteTrack(1); }, 0, "\ncan't write plotsTrk.txt \n\a"}};
    signal(SIGXFSZ, SIG_IGN);
    rlimit room;
    getrlimit(RLIMIT_FSIZE, &room);
    const rlimit full{100, room.rlim_max};
    for (const auto& [name, write, raised, message] : cases) {
        folder_.Write(name, "old");
        const auto body = write;
        const ConsoleRun run = Typed("", [&] {
            setrlimit(RLIMIT_FSIZE, &full);
            const std::shared_ptr<void> restore(nullptr,
                                                [&](void*) { setrlimit(RLIMIT_FSIZE, &room); });
            body();
        });
        EXPECT_EQ(run.raised, raised) << name;
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(folder_.Read(name), "old");
        EXPECT_FALSE(folder_.Has(std::string(name) + ".tmp"));
        // With room again the file is replaced; a link and the permissions stay.
        const auto mode = fs::perms::owner_read | fs::perms::owner_write;
        fs::rename(name, "real");
        fs::permissions("real", mode);
        fs::create_symlink("real", name);
        write();
        EXPECT_TRUE(fs::is_symlink(name));
        EXPECT_GT(fs::file_size("real"), 100U);
        EXPECT_EQ(fs::status("real").permissions(), mode);
        fs::remove("real");
    }
}
