#include "TSLIFFM2/track.h"

#include <utility>

#include "tessel/in_process.h"

namespace {

// The record of a session with 2 traits, 3 communities and 4 OTUs, one partition of the communities
// and two of the OTUs; each number of a run of options tells its place.
const std::string kTwoLines = "otherFormda.txt\n07Jul17\n";
const std::string kRecord = ReadWholeFile(TESSEL_TEST_DATA "/track.txt");

struct TrackTest : InProcess {
    TrackTest() {
        std::strcpy(whichTrack, "plotsTrk.txt");
        Load();
    }

    void Load() { EXPECT_EQ(Open(FormdaOf({Rows(4, {1, 2}), Rows(4, {1, 2, 3})})).raised, 0); }

    ConsoleRun Read(const std::string& text) {
        folder_.Write(whichTrack, text);
        return Typed("", [] { EXPECT_EQ(ReadTrack(), 1); });
    }

    std::string Written(char full) {
        EXPECT_EQ(WithConsole("", [full](FILE*) { WriteTrack(full); }).raised, 0);
        EXPECT_EQ(trackFp, nullptr);
        return folder_.Read(whichTrack);
    }
};

TEST_F(TrackTest, WholeRecordComesBack) {
    ASSERT_EQ(Read(kRecord).raised, 0);
    EXPECT_EQ(Texts({whichFormda, whichHier, whichRoVelComplex, grLabel[1], grCstLabel[1]}),
              Texts({"otherFormda.txt", "plotsHie.txt", "roVelComplex", "dry", "b"}));
    EXPECT_EQ(Ints({isHierarchical, hasHier,        hasScores,    optEnvStruct,    rese_opt,
                    part,           nchor[0],       nGrPoly[1],   fuzzy,           reseTypeOrd,
                    cohe,           keepRichness,   whichPartAOC, whichPartCstAOC, whichLevelGrCST,
                    doDistrib,      adjacentRelOpt, poolCSTopt,   SMWSize,         nGroups,
                    groupRel[1],    nCstGroups,     groupCst[2],  relSelect[2]}),
              Ints({20, 25, 31, 42, 43, 45, 2,  6, 3, 51, 56, 59,
                    66, 67, 68, 77, 78, 80, 82, 2, 2, 2,  2,  1}));
    EXPECT_EQ(fuzziness, 1.5F);
    EXPECT_EQ(groupCst, groupCstP[1]);
    EXPECT_EQ(Written(1), kRecord);
    EXPECT_EQ(Written(0), kTwoLines);
    ASSERT_EQ(Read(Replaced(kRecord, "1.500000", "-nan")).raised, 0);
    EXPECT_EQ(Written(1), Replaced(kRecord, "1.500000", "nan"));
}

TEST_F(TrackTest, TwoLinesLeaveTheSettingsAlone) {
    rese_opt = 7;
    std::strcpy(whichHier, "kept");
    ASSERT_EQ(Read(kTwoLines).raised, 0);
    EXPECT_EQ(Texts({whichFormda, whichHier}), Texts({"otherFormda.txt", "kept"}));
    const ConsoleRun run = Read(Replaced(kRecord, "07Jul17", "01Jan99"));
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
        EXPECT_EQ(Read(kRecord.substr(0, cut)).raised, cut + 1 == kTwoLines.size() ? 0 : 2) << cut;
        EXPECT_EQ(trackFp, nullptr);
    }
    EXPECT_EQ(Read("").raised, 2);
}

// A partition number, a number of groups or a level from the file led outside the arrays.
TEST_F(TrackTest, NumbersThatLeadOutsideTheArraysAreRefused) {
    for (const auto& [truth, lie] : {std::pair("59\n1\n0\n", "59\n11\n0\n"),
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
                                     {"1.500000", "a"}}) {
        Load();
        const ConsoleRun run = Read(Replaced(kRecord, truth, lie));
        EXPECT_EQ(run.raised, 2) << lie;
        EXPECT_EQ(run.err, "\nfile plotsTrk.txt ") << lie;
    }
}

TEST_F(TrackTest, LongWordsAreCutAndLabelsOfThreeCharactersRunTogether) {
    std::string text = Replaced(kRecord, "otherFormda.txt", std::string(60, 'f'));
    text = Replaced(Replaced(text, "soils", "soilsOfTheWholeRiverBasin"), "wet ", "wettest ");
    ASSERT_EQ(Read(text).raised, 0);
    EXPECT_EQ(Texts({whichFormda, partLabel[0], grLabel[0]}),
              Texts({std::string(47, 'f'), "soilsOfTheWholeRiver", "wett"}));
    ASSERT_EQ(Read(kRecord).raised, 0);
    std::strcpy(grCstLabelP[1][0], "old");
    EXPECT_TRUE(Contains(Written(1), "\noldb  \n"));
    EXPECT_EQ(WithConsole("", [](FILE*) { ReadTrack(); }).raised, 2);
}

}  // namespace
