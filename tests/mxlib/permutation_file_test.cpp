// The intermediate results file of the permutation test, on data that can be worked by hand: each
// OTU is alone in its community and in its nesting group, so that the permutation is the identity.
// T is 0.6, 0.8, 0, and DE is ten times DT. The files stand in tests/data.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "mxlib/random_lists.h"
#include "reference/perm_test_data.h"
#include "support/temp_folder.h"

namespace {

std::unique_ptr<PermTestData> HandWorkedData(int opt_ro, bool phylogeny) {
    auto data = RandomPermTestData({3, 3, 1, 1, 2, phylogeny ? 2 : 0, 1.0}, 1, opt_ro);
    auto& in = data->record;
    in.nIterations = 2;
    in.saveRndData = true;
    in.optRestrictPermutNullModel = 1;
    const float traits[3] = {3, 4, 0};
    const double distances[3][3] = {{0, 2, 6}, {0, 0, 8}, {0, 0, 0}};
    for (int i = 0; i < 3; i++) {
        data->nesting[static_cast<size_t>(i)] = i + 1;
        in.B[i][0] = traits[i];
        in.E[i][0] = 2 * traits[i];
        for (int j = 0; j < 3; j++) {
            in.W[i][j] = i == j;
            in.Sb[i][j] = i == j ? 1.0F : 0.5F;
            in.Sf[i][j] = i == j ? 0.0 : 0.25;
            in.DE[i][j] = in.DZ[i][j] = in.DY[i][j] = distances[i][j];
        }
        for (int j = 0; j < 2; j++) in.U[i][j] = i % 2 == j;
        for (int j = 0; phylogeny && j < 2; j++) in.Q[i][j] = in.U[i][j];
    }
    return data;
}

std::string FileOf(PermTestData* data) {
    char* text = nullptr;
    size_t length = 0;
    data->record.stream = open_memstream(&text, &length);
    testing::internal::CaptureStdout();
    InitRndNumberGenerator(1);
    PermTest_FunctionalPhyl_Correl(&data->record);
    testing::internal::GetCapturedStdout();
    fclose(data->record.stream);
    const std::string file(text, length);
    free(text);
    return file;
}

TEST(PermutationFile, ShowsEachStepUnderTheMatrixCorrelation) {
    const std::string data = TESSEL_TEST_DATA;
    EXPECT_EQ(FileOf(HandWorkedData(1, false).get()),
              ReadWholeFile(data + "/permutation_file.txt"));
    EXPECT_EQ(FileOf(HandWorkedData(1, true).get()),
              ReadWholeFile(data + "/permutation_file_phylogeny.txt"));
}

TEST(PermutationFile, ShowsNoResemblancesUnderTheOtherMeasures) {
    const std::string file = FileOf(HandWorkedData(3, true).get());
    for (const char* part :
         {"\nMatrix E of communities by ecological variables):\n6\t\n8\t\n0\t\n\n"
          "RV coefficient between T and E:\t1\n",
          // Partial statistics of the entropy are made of pairs under Mantel only.
          "Random ro(XE.R) =\t0\tRandom ro(TE.R) =\t0\tRandom ro(XT.R) =\t0\t"})
        EXPECT_NE(file.find(part), std::string::npos) << part;
    EXPECT_EQ(file.find("Resemblance matrix"), std::string::npos);
}

}  // namespace
