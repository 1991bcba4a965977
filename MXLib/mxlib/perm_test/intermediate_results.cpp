#include "mxlib/perm_test/intermediate_results.h"

#include "mxlib/perm_test/mantel.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"
#include "mxlibRes/congruence.h"

namespace {

constexpr int kDigits = 6;

void PrintVectorOfColumn(const TestRecord& in, ConstMatrix<double> column) {
    ScopedVector<double> values(in.nCommunities);
    for (int i = 0; i < in.nCommunities; i++) values[i] = column[i][0];
    PrintVectorTab(in.stream, in.nCommunities, values, kDigits, nullptr);
}

void PrintMatrixOf(const Stage& stage, Letter letter) {
    const TestRecord& in = *stage.in;
    PrintMatrixTab(in.stream, in.nCommunities, ColumnsOf(in, letter),
                   MatrixOf(in, *stage.now, letter), kDigits);
}

void PrintResemblance(const Stage& stage, Letter letter) {
    const TestRecord& in = *stage.in;
    ScopedMatrix<double> d(in.nCommunities, in.nCommunities);
    CommunityResemblance(in, *stage.now, letter, d);
    PrintLowerHalfMatrixTab(in.stream, in.nCommunities, d, kDigits);
}

/// DE comes from the caller with its upper half filled.
void PrintResemblanceOfE(const TestRecord& in) {
    const int n = in.nCommunities;
    ScopedMatrix<double> d(n, n);
    for (int i = 0; i < n; i++)
        for (int j = 0; j <= i; j++) d[i][j] = in.DE[j][i];
    PrintLowerHalfMatrixTab(in.stream, n, d, kDigits);
}

/// Rows of `source` in the present order.
template <class T>
void PrintPermutedRows(const Stage& stage, int p, const char* title, const char* orderTitle,
                       T* const* source) {
    const TestRecord& in = *stage.in;
    ScopedVector<const T*> rows(in.nOTUs);
    for (int k = 0; k < in.nOTUs; k++) rows[k] = source[stage.list[k] - 1];
    fprintf(in.stream, "%s", title);
    PrintMatrixTab(in.stream, in.nOTUs, p, rows, kDigits);
    fprintf(in.stream, "%s", orderTitle);
    PrintVectorTab(in.stream, in.nOTUs, stage.list, nullptr);
}

template <class T>
void PrintPermutedSquare(const Stage& stage, const char* title, T* const* source) {
    const TestRecord& in = *stage.in;
    ScopedMatrix<T> permuted(in.nOTUs, in.nOTUs);
    for (int i = 0; i < in.nOTUs; i++)
        for (int j = 0; j < in.nOTUs; j++)
            permuted[i][j] = source[stage.list[i] - 1][stage.list[j] - 1];
    fprintf(in.stream, "%s", title);
    PrintMatrixTab(in.stream, in.nOTUs, in.nOTUs, permuted, kDigits);
    fprintf(in.stream, "\nOrder of original OTUs in permuted similarity matrix Srnd:\t");
    PrintVectorTab(in.stream, in.nOTUs, stage.list, nullptr);
}

void PrintObservedT(const Stage& stage) {
    const TestRecord& in = *stage.in;
    FILE* stream = in.stream;
    const int n = in.nCommunities;
    fprintf(stream,
            "\nPERMUTATION TEST FOR CORRELATIONS ro(XE), ro(TE) AND ro(RE), AND PARTIAL "
            "CORRELATIONS ro(XE.T), ro(XE.TR)\n");
    fprintf(stream, "INTERMEDIATE RESULTS\n");
    fprintf(stream, "\nObserved trait matrix (B):\n");
    PrintMatrixTab(stream, in.nOTUs, in.nTraits, in.B, kDigits);
    fprintf(stream, "\nMatrix W (%d communities by %d OTUs):\n", n, in.nOTUs);
    PrintMatrixTab(stream, n, in.nOTUs, in.W, kDigits);
    fprintf(stream,
            "\n\nMatrix T (comunity weighted means traits in %d communities by %d traits) "
            "computed after B (T = W x B):\n",
            n, in.nTraits);
    PrintMatrixOf(stage, kT);
    const double te = Printable((*stage.observed)[kTE]);
    if (in.opt_ro == kMantel) {
        fprintf(stream,
                "\nResemblance matrix DT between %d communities (based on matrix T of traits by "
                "communities):\n",
                n);
        PrintResemblance(stage, kT);
        fprintf(stream,
                "\nResemblance matrix DE between %d communities (based on matrix E of ecological "
                "variables by communities):\n",
                n);
        PrintResemblanceOfE(in);
        fprintf(stream, "\nMatrix correlation between DT and DE:\t%g\n", te);
        return;
    }
    fprintf(stream, "\nMatrix E of communities by ecological variables):\n");
    PrintMatrixOf(stage, kE);
    fprintf(stream,
            in.opt_ro == kProcrustes ? "\nProcrustes correlation between T and E:\t%g\n"
                                     : "\nRV coefficient between T and E:\t%g\n",
            te);
}

void PrintObservedX(const Stage& stage) {
    const TestRecord& in = *stage.in;
    const Statistics& observed = *stage.observed;
    fprintf(in.stream, "\nObserved belonging matrix (U):\n");
    PrintMatrixTab(in.stream, in.nOTUs, in.nTypes, in.U, kDigits);
    fprintf(in.stream, "\nObserved ro(XT)=\t%g\n", Printable(observed[kXT]));
    fprintf(in.stream, "Observed ro(XE)=\t%g\n", Printable(observed[kXE]));
    fprintf(in.stream, "Observed ro(XE.T)=\t%g\n", Printable(observed[kXE_T]));
}

/// Similarities or resemblances between OTUs, entropies made of them, and their resemblance.
template <class T>
void PrintObservedEntropy(const Stage& stage, const char* title, T* const* s,
                          const char* entropyTitle, const char* resemblanceTitle, Letter letter) {
    const TestRecord& in = *stage.in;
    fprintf(in.stream, "%s", title);
    PrintMatrixTab(in.stream, in.nOTUs, in.nOTUs, s, kDigits);
    fprintf(in.stream, entropyTitle, in.nCommunities);
    PrintVectorOfColumn(in, MatrixOf(in, *stage.now, letter));
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "%s", resemblanceTitle);
        PrintResemblance(stage, letter);
    }
    fprintf(in.stream, "\n");
}

void PrintObservedR(const Stage& stage) {
    const TestRecord& in = *stage.in;
    PrintObservedEntropy(
        stage, "\nObserved similarity matrix (Sb) between OTUs, based on the traits:\n:", in.Sb,
        "\n\nRao entropy vector R (%d communities) computed after Sb and expressed as equivalent "
        "number of OTUs (Jost 2007):\n",
        "\nResemblance matrix DR comparing communities based on their Rao entropy: \n", kR);
    if (!in.includePhylogeny) return;
    const char* title =
        in.phylogenyIsDissimilarity
            ? "\nObserved dissimilarity matrix (Sf) in the range 0-1 between OTUs, based on the "
              "phylogeny:\n:"
            : "\nObserved similarity matrix (Sf) in the range 0-1 between OTUs, based on the "
              "phylogeny:\n:";
    PrintObservedEntropy(
        stage, title, in.Sf,
        "\n\nRao entropy vector R (%d communities) computed after Sf and expressed as equivalent "
        "number of OTUs (Jost 2007):\n",
        "\nResemblance matrix DRaoPhyl comparing communities after based on their Rao entropy "
        "using phylogenetic distances: \n",
        kF);
}

void PrintPermutedT(const Stage& stage) {
    const TestRecord& in = *stage.in;
    PrintPermutedRows(stage, in.nTraits, "Permuted trait matrix (Brnd):\n",
                      "\nOrder of original OTUs in permuted traits matrix Brnd:\t", in.B);
    fprintf(in.stream,
            "\n\nMatrix Trnd (%d communities by %d traits) generated after Brnd (Trnd = W x "
            "Brnd):\n",
            in.nCommunities, in.nTraits);
    PrintMatrixOf(stage, kT);
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "\nResemblance matrix DT between %d communities:\n", in.nCommunities);
        PrintResemblance(stage, kT);
    }
    fprintf(in.stream, "\nIteration %d\tRandom ro(TE) =\t%g\tCummulative frequency for ro(TE)=%g\n",
            stage.iteration, Printable((*stage.random)[kTE]), stage.frequency[kTE]);
}

void PrintPermutedX(const Stage& stage) {
    const TestRecord& in = *stage.in;
    const Statistics& random = *stage.random;
    PrintPermutedRows(stage, in.nTypes, "Permuted belonging matrix (Urnd) based on traits:\n",
                      "\nOrder of original OTUs in permuted belongin matrix Urnd:\t", in.U);
    fprintf(in.stream,
            "\n\nMatrix Xrnd (%d communities by %d PFTs) generated after Urnd (Xrnd = W x "
            "Urnd):\n",
            in.nCommunities, in.nTypes);
    PrintMatrixOf(stage, kX);
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "\nResemblance matrix DX between %d communities:\n", in.nCommunities);
        PrintResemblance(stage, kX);
    }
    fprintf(in.stream,
            "\nIteration %d\tRandom ro(XT) =\t%g\tRandom ro(XE) =\t%g\tRandom ro(XE.T) "
            "=\t%g\tCummulative frequency for ro(XE)=%g\tCummulative frequency for ro(XE.T)=%g\n",
            stage.iteration, Printable(random[kXT]), Printable(random[kXE]),
            Printable(random[kXE_T]), stage.frequency[kXE], stage.frequency[kXE_T]);
}

void PrintPermutedP(const Stage& stage) {
    const TestRecord& in = *stage.in;
    PrintPermutedRows(stage, in.nTaxa, "Permuted belonging matrix (Qrnd) based on phylogeny:\n",
                      "\nOrder of original OTUs in permuted belongin matrix Qrnd:\t", in.Q);
    fprintf(in.stream,
            "\n\nMatrix Prnd (%d communities by %d taxa) generated after Qrnd (Prnd = W x "
            "Qrnd):\n",
            in.nCommunities, in.nTaxa);
    PrintMatrixOf(stage, kP);
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "\nResemblance matrix DP between %d communities:\n", in.nCommunities);
        PrintResemblance(stage, kP);
    }
    constexpr struct {
        const char* name;
        Statistic statistic;
    } kLines[] = {{" ro(PE)", kPE},
                  {"Random ro(PT)", kPT},
                  {"Random ro(PX)", kPX},
                  {"Random ro(PX.T)", kPX_T},
                  {"Random ro(TE.P)", kTE_P},
                  {"Random ro(XE.P)", kXE_P},
                  {"Random ro(XE.TP)", kXE_TP},
                  {"Random ro(PE.T)", kPE_T},
                  {"Random ro(PE.X)", kPE_X}};
    fprintf(in.stream,
            "\nIteration %d\tRandom values and cummulative frequencies for the following:\n",
            stage.iteration);
    for (const auto& line : kLines)
        fprintf(in.stream, "%s =\t%g\t%g\n", line.name, Printable((*stage.random)[line.statistic]),
                stage.frequency[line.statistic]);
}

/// The five values from ro(XR) to ro(XT.R) are the observed ones: the file has always read so.
void PrintPermutedR(const Stage& stage) {
    const TestRecord& in = *stage.in;
    const Statistics& observed = *stage.observed;
    PrintPermutedSquare(stage, "Permuted similarity matrix (Srnd):\n", in.Sb);
    fprintf(in.stream,
            "\n\nRao entropy vector Rrnd (%d communities) generated after Srnd and expressed as "
            "equivalent number of OTUs (Jost 2007):\n",
            in.nCommunities);
    PrintVectorOfColumn(in, MatrixOf(in, *stage.now, kR));
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "\nResemblance matrix DR between %d communities:\n", in.nCommunities);
        PrintResemblance(stage, kR);
    }
    fprintf(in.stream,
            "\nIteration %d\tRandom ro(RE) =\t%g\tRandom ro(XR) =\t%g\tRandom ro(TR) =\t%g\tRandom "
            "ro(XE.R) =\t%g\tRandom ro(TE.R) =\t%g\tRandom ro(XT.R) =\t%g\tRandom ro(XE.TR) "
            "=\t%g\tCummulative frequency for ro(RE)=%g\tCummulative frequency for "
            "ro(XE.TR)=%g\n",
            stage.iteration, Printable((*stage.random)[kRE]), Printable(observed[kXR]),
            Printable(observed[kTR]), Printable(observed[kXE_R]), Printable(observed[kTE_R]),
            Printable(observed[kXT_R]), Printable((*stage.random)[kXE_TR]), stage.frequency[kRE],
            stage.frequency[kXE_TR]);
}

void PrintPermutedF(const Stage& stage) {
    const TestRecord& in = *stage.in;
    PrintPermutedSquare(stage, "Permuted phylogenetic similarity matrix (Sf_rnd):\n", in.Sf);
    fprintf(in.stream,
            "\n\nRao entropy vector Rrnd (%d communities) generated after phylogenetic "
            "resemblances Sf_rnd and expressed as equivalent number of OTUs (Jost 2007):\n",
            in.nCommunities);
    PrintVectorOfColumn(in, MatrixOf(in, *stage.now, kF));
    if (in.opt_ro == kMantel) {
        fprintf(in.stream, "\nResemblance matrix DR between %d communities:\n", in.nCommunities);
        PrintResemblance(stage, kF);
    }
    fprintf(in.stream, "\nIteration %d\tRandom ro(FE) =\t%g\tCummulative frequency for ro(FE)=%g\n",
            stage.iteration, Printable((*stage.random)[kFE]), stage.frequency[kFE]);
}

}  // namespace

void PrintObservedBlock(const Stage& stage, Block block) {
    if (block == kBlockT) PrintObservedT(stage);
    if (block == kBlockX) PrintObservedX(stage);
    if (block == kBlockR) PrintObservedR(stage);
}

void PrintPermutedBlock(const Stage& stage, Block block) {
    constexpr struct {
        bool hasHeading;
        void (*print)(const Stage&);
    } kPrinters[kBlocks] = {{true, PrintPermutedT},
                            {true, PrintPermutedX},
                            {false, PrintPermutedP},
                            {true, PrintPermutedR},
                            {false, PrintPermutedF}};
    if (kPrinters[block].hasHeading)
        fprintf(stage.in->stream, "\n\nITERATION\t%d\n", stage.iteration);
    kPrinters[block].print(stage);
}
