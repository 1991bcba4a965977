// The intermediate results file of the permutation test, on data that can be worked by hand: each
// OTU is alone in its community and in its nesting group, so that the permutation is the identity.
// T is 0.6, 0.8, 0, and DE is ten times DT.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "mxlib/random_lists.h"
#include "reference/perm_test_data.h"

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

constexpr char kObserved[] =
    "\nPERMUTATION TEST FOR CORRELATIONS ro(XE), ro(TE) AND ro(RE), AND PARTIAL CORRELATIONS "
    "ro(XE.T), ro(XE.TR)\n"
    "INTERMEDIATE RESULTS\n"
    "\nObserved trait matrix (B):\n3\t\n4\t\n0\t\n"
    "\nMatrix W (3 communities by 3 OTUs):\n1\t0\t0\t\n0\t1\t0\t\n0\t0\t1\t\n"
    "\n\nMatrix T (comunity weighted means traits in 3 communities by 1 traits) computed after B "
    "(T = W x B):\n0.6\t\n0.8\t\n0\t\n"
    "\nResemblance matrix DT between 3 communities (based on matrix T of traits by communities):\n"
    "0\t\n0.2\t0\t\n0.6\t0.8\t0\t\n"
    "\nResemblance matrix DE between 3 communities (based on matrix E of ecological variables by "
    "communities):\n0\t\n2\t0\t\n6\t8\t0\t\n"
    "\nMatrix correlation between DT and DE:\t1\n"
    "\nObserved belonging matrix (U):\n1\t0\t\n0\t1\t\n1\t0\t\n"
    "\nObserved ro(XT)=\t-0.188982\nObserved ro(XE)=\t-0.188982\nObserved ro(XE.T)=\t0\n"
    "\nObserved similarity matrix (Sb) between OTUs, based on the traits:\n:"
    "1\t0.5\t0.5\t\n0.5\t1\t0.5\t\n0.5\t0.5\t1\t\n"
    "\n\nRao entropy vector R (3 communities) computed after Sb and expressed as equivalent number "
    "of OTUs (Jost 2007):\n1\t1\t1\t\n"
    "\nResemblance matrix DR comparing communities based on their Rao entropy: \n"
    "0\t\n0\t0\t\n0\t0\t0\t\n\n";

constexpr char kObservedPhylogeny[] =
    "\nObserved dissimilarity matrix (Sf) in the range 0-1 between OTUs, based on the "
    "phylogeny:\n:0\t0.25\t0.25\t\n0.25\t0\t0.25\t\n0.25\t0.25\t0\t\n"
    "\n\nRao entropy vector R (3 communities) computed after Sf and expressed as equivalent number "
    "of OTUs (Jost 2007):\n1\t1\t1\t\n"
    "\nResemblance matrix DRaoPhyl comparing communities after based on their Rao entropy using "
    "phylogenetic distances: \n0\t\n0\t0\t\n0\t0\t0\t\n\n";

constexpr char kIterationTAndX[] =
    "\n\nITERATION\t1\n"
    "Permuted trait matrix (Brnd):\n3\t\n4\t\n0\t\n"
    "\nOrder of original OTUs in permuted traits matrix Brnd:\t1\t2\t3\t\n"
    "\n\nMatrix Trnd (3 communities by 1 traits) generated after Brnd (Trnd = W x Brnd):\n"
    "0.6\t\n0.8\t\n0\t\n"
    "\nResemblance matrix DT between 3 communities:\n0\t\n0.2\t0\t\n0.6\t0.8\t0\t\n"
    "\nIteration 1\tRandom ro(TE) =\t1\tCummulative frequency for ro(TE)=2\n"
    "\n\nITERATION\t1\n"
    "Permuted belonging matrix (Urnd) based on traits:\n1\t0\t\n0\t1\t\n1\t0\t\n"
    "\nOrder of original OTUs in permuted belongin matrix Urnd:\t1\t2\t3\t\n"
    "\n\nMatrix Xrnd (3 communities by 2 PFTs) generated after Urnd (Xrnd = W x Urnd):\n"
    "1\t0\t\n0\t1\t\n1\t0\t\n"
    "\nResemblance matrix DX between 3 communities:\n0\t\n1.41421\t0\t\n0\t1.41421\t0\t\n"
    "\nIteration 1\tRandom ro(XT) =\t-0.188982\tRandom ro(XE) =\t-0.188982\tRandom ro(XE.T) "
    "=\t0\tCummulative frequency for ro(XE)=2\tCummulative frequency for ro(XE.T)=2\n";

constexpr char kIterationP[] =
    "Permuted belonging matrix (Qrnd) based on phylogeny:\n1\t0\t\n0\t1\t\n1\t0\t\n"
    "\nOrder of original OTUs in permuted belongin matrix Qrnd:\t1\t2\t3\t\n"
    "\n\nMatrix Prnd (3 communities by 2 taxa) generated after Qrnd (Prnd = W x Qrnd):\n"
    "1\t0\t\n0\t1\t\n1\t0\t\n"
    "\nResemblance matrix DP between 3 communities:\n0\t\n1.41421\t0\t\n0\t1.41421\t0\t\n"
    "\nIteration 1\tRandom values and cummulative frequencies for the following:\n"
    " ro(PE) =\t-0.188982\t2\nRandom ro(PT) =\t-0.188982\t2\nRandom ro(PX) =\t1\t2\n"
    "Random ro(PX.T) =\t1\t2\nRandom ro(TE.P) =\t1\t2\nRandom ro(XE.P) =\t0\t2\n"
    "Random ro(XE.TP) =\t0\t2\nRandom ro(PE.T) =\t0\t2\nRandom ro(PE.X) =\t0\t2\n";

constexpr char kIterationR[] =
    "\n\nITERATION\t1\n"
    "Permuted similarity matrix (Srnd):\n1\t0.5\t0.5\t\n0.5\t1\t0.5\t\n0.5\t0.5\t1\t\n"
    "\nOrder of original OTUs in permuted similarity matrix Srnd:\t1\t2\t3\t\n"
    "\n\nRao entropy vector Rrnd (3 communities) generated after Srnd and expressed as equivalent "
    "number of OTUs (Jost 2007):\n1\t1\t1\t\n"
    "\nResemblance matrix DR between 3 communities:\n0\t\n0\t0\t\n0\t0\t0\t\n"
    "\nIteration 1\tRandom ro(RE) =\t0\tRandom ro(XR) =\t0\tRandom ro(TR) =\t0\tRandom ro(XE.R) "
    "=\t-0.188982\tRandom ro(TE.R) =\t1\tRandom ro(XT.R) =\t-0.188982\tRandom ro(XE.TR) "
    "=\t0\tCummulative frequency for ro(RE)=2\tCummulative frequency for ro(XE.TR)=2\n";

constexpr char kIterationF[] =
    "Permuted phylogenetic similarity matrix (Sf_rnd):\n"
    "0\t0.25\t0.25\t\n0.25\t0\t0.25\t\n0.25\t0.25\t0\t\n"
    "\nOrder of original OTUs in permuted similarity matrix Srnd:\t1\t2\t3\t\n"
    "\n\nRao entropy vector Rrnd (3 communities) generated after phylogenetic resemblances Sf_rnd "
    "and expressed as equivalent number of OTUs (Jost 2007):\n1\t1\t1\t\n"
    "\nResemblance matrix DR between 3 communities:\n0\t\n0\t0\t\n0\t0\t0\t\n"
    "\nIteration 1\tRandom ro(FE) =\t0\tCummulative frequency for ro(FE)=2\n";

TEST(PermutationFile, ShowsEachStepUnderTheMatrixCorrelation) {
    EXPECT_EQ(FileOf(HandWorkedData(1, false).get()),
              std::string(kObserved) + kIterationTAndX + kIterationR);
    EXPECT_EQ(FileOf(HandWorkedData(1, true).get()), std::string(kObserved) + kObservedPhylogeny +
                                                         kIterationTAndX + kIterationP +
                                                         kIterationR + kIterationF);
}

TEST(PermutationFile, ShowsNoResemblancesUnderTheOtherMeasures) {
    const std::string variables = "\nMatrix E of communities by ecological variables):\n";
    const std::string e = variables + "6\t\n8\t\n0\t\n";
    const std::string procrustes = FileOf(HandWorkedData(2, true).get());
    EXPECT_NE(procrustes.find(e + "\nProcrustes correlation between T and E:\t1\n"),
              std::string::npos);
    const std::string rv = FileOf(HandWorkedData(3, true).get());
    EXPECT_NE(rv.find(e + "\nRV coefficient between T and E:\t1\n"), std::string::npos);
    for (const std::string& file : {procrustes, rv}) {
        EXPECT_EQ(file.find("Resemblance matrix"), std::string::npos);
        // Partial statistics of the entropy are made of pairs under the matrix correlation only.
        EXPECT_NE(file.find("Random ro(XE.R) =\t0\tRandom ro(TE.R) =\t0\tRandom ro(XT.R) =\t0\t"),
                  std::string::npos);
    }
}

/// Permuted rows and columns follow one list, and a measure that computes nothing prints zeros.
TEST(PermutationFile, FollowsThePermutedOrder) {
    auto data = HandWorkedData(1, false);
    auto& in = data->record;
    in.optRestrictPermutNullModel = 0;
    in.rese_opt = 7;
    in.Sb[0][1] = in.Sb[1][0] = 0.1F;
    in.Sb[0][2] = in.Sb[2][0] = 0.2F;
    in.Sb[1][2] = in.Sb[2][1] = 0.3F;
    const std::string file = FileOf(data.get());
    InitRndNumberGenerator(1);
    int list[3] = {1, 2, 3};
    RndListSpecified(3, list);
    std::string order, traits, similarities;
    for (const int i : list) {
        order += std::to_string(i) + "\t";
        char text[40];
        snprintf(text, sizeof(text), "%g\t\n", static_cast<double>(in.B[i - 1][0]));
        traits += text;
        for (const int j : list) {
            snprintf(text, sizeof(text), "%g\t", static_cast<double>(in.Sb[i - 1][j - 1]));
            similarities += text;
        }
        similarities += "\n";
    }
    EXPECT_NE(file.find("(Brnd):\n" + traits +
                        "\nOrder of original OTUs in permuted traits matrix "
                        "Brnd:\t" +
                        order + "\n"),
              std::string::npos);
    EXPECT_NE(file.find("(Srnd):\n" + similarities), std::string::npos);
    EXPECT_NE(file.find("DX between 3 communities:\n0\t\n0\t0\t\n0\t0\t0\t\n"), std::string::npos);
}

}  // namespace
