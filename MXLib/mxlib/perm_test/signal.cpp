#include "mxlib/perm_test/signal.h"

#include <algorithm>
#include <cmath>

#include "mxlib/perm_test/entropy.h"
#include "mxlib/perm_test/mantel.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"

namespace {

bool IsSymmetric(int n, ConstMatrix<double> s) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < i; j++)
            if (s[i][j] != s[j][i]) return false;
    return true;
}

std::unique_ptr<SignalOfPairs> MakeSignalOfPairs(int n) {
    return std::unique_ptr<SignalOfPairs>(
        new SignalOfPairs{false, ScopedVector<double>(CountCellsAbove(n)), ScopedVector<double>(n),
                          ScopedVector<double>(static_cast<long>(n) * n), 0.0});
}

/// Both sides centred at the means of their cells above the diagonal.
void PrepareCorrelation(const TestRecord& in, SignalOfPairs* pairs) {
    const int n = in.nOTUs;
    const long nCells = CountCellsAbove(n);
    CellsAbove<float>(n, in.Sb, pairs->above);
    const double* above = pairs->above;
    pairs->plain =
        n < 2 || HasMissing(1, nCells, &above) || HasMissing(n, n, in.Sf) || !IsSymmetric(n, in.Sf);
    if (pairs->plain) return;
    const Kernels& kernels = KernelsOfProcessor();
    ScopedVector<double> cells(nCells);
    CellsAbove<double>(n, in.Sf, cells);
    const double mean = kernels.sum(nCells, cells) / static_cast<double>(nCells);
    const double squares = kernels.centre(nCells, mean, cells);
    double* to = pairs->phylogeny;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) *to++ = in.Sf[i][j] - mean;
    const double meanB = kernels.sum(nCells, pairs->above) / static_cast<double>(nCells);
    const double squaresB = kernels.centre(nCells, meanB, pairs->above);
    pairs->scale = squares == 0 || squaresB == 0 ? 0.0 : 1.0 / std::sqrt(squares * squaresB);
}

/// Each pair of objects counts twice, and the diagonal once.
void PrepareRV(const PhylogeneticSignal& signal, SignalOfPairs* pairs) {
    const int n = signal.sideB->n;
    std::copy_n(signal.sideB->above.get(), CountCellsAbove(n), pairs->above.get());
    std::copy_n(signal.sideB->diagonal.get(), n, pairs->diagonal.get());
    const double* cell = signal.sideScores->above;
    double* table = pairs->phylogeny;
    for (int i = 0; i < n; i++) {
        table[static_cast<long>(i) * n + i] = signal.sideScores->diagonal[i];
        for (int j = i + 1; j < n; j++, cell++)
            table[static_cast<long>(i) * n + j] = table[static_cast<long>(j) * n + i] = 2.0 * *cell;
    }
    pairs->scale = 1.0 / std::sqrt(SelfProduct(*signal.sideScores) * SelfProduct(*signal.sideB));
}

double SumOfLookups(int n, const SignalOfPairs& pairs, const int* at) {
    double sum = 0.0;
    const double* above = pairs.above;
    for (int i = 0; i < n; i++) {
        const int length = n - 1 - i;
        const double* row = pairs.phylogeny + static_cast<long>(at[i]) * n;
        sum += pairs.diagonal[i] * row[at[i]] + GatheredDot(length, at + i + 1, above, row);
        above += length;
    }
    return sum;
}

std::unique_ptr<CongruenceSide<float>> MakeSide(int measure, int n, int p) {
    return std::unique_ptr<CongruenceSide<float>>(
        new CongruenceSide<float>(MakeCongruenceSide<float>(measure, n, p)));
}

double ObservedSignal(const TestRecord& in, PhylogeneticSignal* signal) {
    if (in.opt_ro == kMantel) {
        const double correlation = MatrixCorr(in.nOTUs, in.Sb, in.Sf);
        return SignalIsTurned(in) ? -correlation : correlation;
    }
    NormalizeCols(in.nOTUs, in.nTraits, in.B, signal->normalisedB);
    SetCongruenceSide<float>(signal->normalisedB, signal->sideB.get());
    SetCongruenceSide<float>(in.PhylScores, signal->sideScores.get());
    return Congruence(*signal->sideB, *signal->sideScores, signal->scratch.get());
}

}  // namespace

bool SignalIsTurned(const TestRecord& in) {
    return in.opt_ro == kMantel && in.phylogenyIsDissimilarity;
}

PhylogeneticSignal MakePhylogeneticSignal(const TestRecord& in) {
    const bool mantel = in.opt_ro == kMantel;
    const int n = in.nOTUs;
    PhylogeneticSignal signal{0.0,
                              ScopedVector<int>(n),
                              nullptr,
                              ScopedMatrix<double>(mantel ? n : 0, n),
                              ScopedMatrix<float>(mantel ? 0 : n, in.nTraits),
                              ScopedVector<const float*>(n),
                              nullptr,
                              nullptr,
                              nullptr};
    if (!mantel) {
        signal.sideB = MakeSide(in.opt_ro, n, in.nTraits);
        signal.sideScores = MakeSide(in.opt_ro, n, in.nPhylAxes);
        signal.scratch.reset(new CongruenceScratch<float>(
            MakeCongruenceScratch<float>(in.opt_ro, n, in.nTraits, in.nPhylAxes)));
    }
    signal.observed = ObservedSignal(in, &signal);
    return signal;
}

void PreparePermutedSignal(const TestRecord& in, PhylogeneticSignal* signal) {
    if (in.opt_ro == kProcrustes) return;
    signal->pairs = MakeSignalOfPairs(in.nOTUs);
    if (in.opt_ro == kMantel)
        PrepareCorrelation(in, signal->pairs.get());
    else
        PrepareRV(*signal, signal->pairs.get());
}

double PermutedSignal(const TestRecord& in, const int* list, PhylogeneticSignal* signal) {
    const int n = in.nOTUs;
    if (in.opt_ro == kProcrustes) {
        for (int i = 0; i < n; i++) signal->permutedScores[i] = in.PhylScores[list[i] - 1];
        SetCongruenceSide<float>(signal->permutedScores, signal->sideScores.get());
        return Congruence(*signal->sideB, *signal->sideScores, signal->scratch.get());
    }
    const SignalOfPairs& pairs = *signal->pairs;
    if (pairs.plain) {
        PermuteBoth<double>(n, list, in.Sf, signal->permutedSf);
        return MatrixCorr(n, in.Sb, signal->permutedSf);
    }
    if (pairs.scale == 0) return 0.0;
    for (int i = 0; i < n; i++) signal->at[i] = list[i] - 1;
    return SumOfLookups(n, pairs, signal->at) * pairs.scale;
}
