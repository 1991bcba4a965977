#include "TSLIFFM2/track.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

// The record of a session with 2 traits, 3 communities and 4 OTUs, one partition of the communities
// and two of the OTUs; each number of a run of options tells its place.
const std::string kTwoLines = "otherFormda.txt\n07Jul17\n";
const std::string kNames =
    "envRese\nNULL\nNULL\nplotsHie.txt\nNULL\nNULL\nNULL\nNULL\nNULL\nNULL\nNULL\nNULL\nNULL\n"
    "NULL\nNULL\nNULL\nroVelComplex\n";
const std::string kState =
    "20\n21\n22\n23\n24\n25\n26\n27\n28\n29\n30\n31\n32\n33\n34\n35\n36\n37\n38\n39\n40\n41\n42\n"
    "43\n44\n45\n";
const std::string kTraits = "2 1 \n3 4 \n5 6 \n3\n1.500000\n";
const std::string kMeasures = "51\n52\n53\n54\n55\n56\n57\n58\n59\n";
const std::string kCommunityPartition = "1\n0\nsoils \n2 \nwet dry \n1 2 1 \n";
const std::string kLevels = "66 67 \n68\n";
const std::string kOTUPartitions = "2\n1\nforms ages \n1 2 \na  \na  b  \n1 2 \n1 1 1 \n1 2 2 1 \n";
const std::string kEnd = "1 0 1 \n77\n78\n79\n80\n81\n82\n";
const std::string kRecord = kTwoLines + kNames + kState + kTraits + kMeasures +
                            kCommunityPartition + kLevels + kOTUPartitions + kEnd;

std::string Replace(std::string text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), by);
}

class TrackTest : public testing::Test {
  protected:
    TrackTest() {
        std::strcpy(whichTrack, "plotsTrk.txt");
        folder_.Write("dataFormda.txt",
                      "T\n2\na b\n3 3\n0 0\n2 2\n3\np q r\n4\n0 0 0\n0 0 0 0 0 0 0\n25Jun2016\n"
                      "1 2\n3 4\n5 6\n7 8\n1 2 3\n4 5 6\n7 8 9\n1 1 1\n0\n0\nSMW 1\n0\n0\n");
        LoadData();
    }

    void LoadData() {
        std::strcpy(whichFormda, "dataFormda.txt");
        EXPECT_EQ(WithConsole("", [](FILE*) { OpenFormda(1); }).raised, 0);
    }

    ConsoleRun Read(const std::string& text) {
        folder_.Write(whichTrack, text);
        return WithConsole("", [](FILE*) {
            out = stdout;
            EXPECT_EQ(ReadTrack(), 1);
        });
    }

    std::string Written(char full) {
        EXPECT_EQ(WithConsole("", [full](FILE*) { WriteTrack(full); }).raised, 0);
        EXPECT_EQ(trackFp, nullptr);
        return folder_.Read(whichTrack);
    }

    TempFolder folder_;
    WorkingIn working_{folder_.path()};
};

TEST_F(TrackTest, WholeRecordComesBack) {
    ASSERT_EQ(Read(kRecord).raised, 0);
    EXPECT_STREQ(whichFormda, "otherFormda.txt");
    EXPECT_STREQ(whichHier, "plotsHie.txt");
    EXPECT_STREQ(whichRoVelComplex, "roVelComplex");
    EXPECT_EQ(std::vector<int>({isHierarchical, hasHier, hasScores, optEnvStruct, rese_opt, part}),
              std::vector<int>({20, 25, 31, 42, 43, 45}));
    EXPECT_EQ(nchor[0], 2);
    EXPECT_EQ(nGrPoly[1], 6);
    EXPECT_EQ(fuzzy, 3);
    EXPECT_EQ(fuzziness, 1.5F);
    EXPECT_EQ(std::vector<int>({reseTypeOrd, cohe, keepRichness, whichPartAOC, whichPartCstAOC,
                                whichLevelGrCST, doDistrib, adjacentRelOpt, poolCSTopt, SMWSize}),
              std::vector<int>({51, 56, 59, 66, 67, 68, 77, 78, 80, 82}));
    EXPECT_EQ(nGroups, 2);
    EXPECT_STREQ(grLabel[1], "dry");
    EXPECT_EQ(groupRel[1], 2);
    EXPECT_EQ(nCstGroups, 2);
    EXPECT_STREQ(grCstLabel[1], "b");
    EXPECT_EQ(groupCst, groupCstP[1]);
    EXPECT_EQ(groupCst[2], 2);
    EXPECT_EQ(relSelect[2], 1);
    EXPECT_EQ(Written(1), kRecord);
    EXPECT_EQ(Written(0), kTwoLines);
}

TEST_F(TrackTest, TwoLinesLeaveTheSettingsAlone) {
    rese_opt = 7;
    std::strcpy(whichHier, "kept");
    ASSERT_EQ(Read(kTwoLines).raised, 0);
    EXPECT_STREQ(whichFormda, "otherFormda.txt");
    EXPECT_EQ(rese_opt, 7);
    EXPECT_STREQ(whichHier, "kept");

    const ConsoleRun run = Read(Replace(kRecord, "07Jul17", "01Jan99"));
    EXPECT_EQ(run.raised, 0);
    EXPECT_EQ(run.out,
              "\n\aFormda file is compatible, but other files of the session \n"
              "are not compatible with this program version." +
                  std::string(53, ' ') + "\n");
    EXPECT_EQ(rese_opt, 7);
}

TEST_F(TrackTest, EveryCutButTheFirstTwoLinesEndsAtTheEndOfTheFile) {
    const std::size_t last = kRecord.find_last_of('\n', kRecord.size() - 2);
    for (std::size_t cut = 0; cut <= last; cut++) {
        if (kRecord[cut] != '\n') continue;
        const ConsoleRun run = Read(kRecord.substr(0, cut));
        EXPECT_EQ(run.raised, cut + 1 == kTwoLines.size() ? 0 : 2) << "cut at " << cut;
        EXPECT_EQ(trackFp, nullptr);
    }
    EXPECT_EQ(Read("").raised, 2);
}

// A partition number, a number of groups or a level from the file led outside the arrays.
TEST_F(TrackTest, NumbersThatLeadOutsideTheArraysAreRefused) {
    const std::pair<const char*, const char*> lies[] = {
        {"59\n1\n0\n", "59\n11\n0\n"},
        {"59\n1\n0\n", "59\n-1\n0\n"},
        {"59\n1\n0\n", "59\n1\n10\n"},
        {"59\n1\n0\n", "59\n1\n-1\n"},
        {"soils \n2 ", "soils \n4 "},
        {"68\n2\n1\n", "68\n11\n1\n"},
        {"68\n2\n1\n", "68\n2\n10\n"},
        {"ages \n1 2 ", "ages \n1 5 "},
        {"b  \n1 2 ", "b  \n1 3 "},
        {"b  \n1 2 ", "b  \n0 2 "},
        {"2 1 \n3 4 ", "2 1 \n3 5 "},
        {"2 1 \n3 4 ", "2 1 \n-3 4 "},
        {"1.500000", "a"},
    };
    for (const auto& [truth, lie] : lies) {
        LoadData();
        const ConsoleRun run = Read(Replace(kRecord, truth, lie));
        EXPECT_EQ(run.raised, 2) << lie;
        EXPECT_EQ(run.err, "\nfile plotsTrk.txt ") << lie;
    }
}

TEST_F(TrackTest, LongWordsAreCut) {
    std::string text = Replace(kRecord, "otherFormda.txt", std::string(60, 'f'));
    text = Replace(text, "soils", "soilsOfTheWholeRiverBasin");
    ASSERT_EQ(Read(Replace(text, "wet ", "wettest ")).raised, 0);
    EXPECT_EQ(std::strlen(whichFormda), 47U);
    EXPECT_STREQ(partLabel[0], "soilsOfTheWholeRiver");
    EXPECT_STREQ(grLabel[0], "wett");
}

TEST_F(TrackTest, LabelsOfThreeCharactersRunTogether) {
    ASSERT_EQ(Read(kRecord).raised, 0);
    std::strcpy(grCstLabelP[1][0], "old");
    EXPECT_NE(Written(1).find("\noldb  \n"), std::string::npos);
    EXPECT_EQ(WithConsole("", [](FILE*) { ReadTrack(); }).raised, 2);
}

TEST_F(TrackTest, FilesThatCannotBeOpened) {
    std::strcpy(whichTrack, "absent/plotsTrk.txt");
    EXPECT_EQ(WithConsole("", [](FILE*) { ReadTrack(); }).raised, 4);
    EXPECT_EQ(WithConsole("", [](FILE*) { WriteTrack(1); }).raised, 4);
}

}  // namespace
