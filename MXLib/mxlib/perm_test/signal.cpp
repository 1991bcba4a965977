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

std::shared_ptr<SignalOfPairs> MakeSignalOfPairs(int n) {
    return std::shared_ptr<SignalOfPairs>(
        new SignalOfPairs{false, ScopedVector<double>(CountCellsAbove(n)), ScopedVector<double>(n),
                          ScopedVector<double>(static_cast<std::ptrdiff_t>(n) * n), 0.0});
}

/// Both sides centred at the means of their cells above the diagonal.
void PrepareCorrelation(const TestRecord& in, SignalOfPairs* pairs) {
    const int n = in.nOTUs;
    const std::ptrdiff_t nCells = CountCellsAbove(n);
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
        table[static_cast<std::ptrdiff_t>(i) * n + i] = signal.sideScores->diagonal[i];
        for (int j = i + 1; j < n; j++, cell++)
            table[static_cast<std::ptrdiff_t>(i) * n + j] =
                table[static_cast<std::ptrdiff_t>(j) * n + i] = 2.0 * *cell;
    }
    pairs->scale = 1.0 / std::sqrt(SelfProduct(*signal.sideScores) * SelfProduct(*signal.sideB));
}

/// What the OTU in place i adds, `row` being its row of the phylogeny.
double TermOfPlace(int n, const SignalOfPairs& pairs, const int* otuOf, int i, const double* row) {
    const double* above = pairs.above + static_cast<std::ptrdiff_t>(i) * n -
                          static_cast<std::ptrdiff_t>(i) * (i + 1) / 2;
    return pairs.diagonal[i] * row[otuOf[i]] + GatheredDot(n - 1 - i, otuOf + i + 1, above, row);
}

bool AreLookedUp(const PhylogeneticSignal& signal) {
    return signal.pairs && !signal.pairs->plain && signal.pairs->scale != 0;
}

std::unique_ptr<CongruenceSide<float>> MakeSide(int measure, int n, int p) {
    return std::unique_ptr<CongruenceSide<float>>(
        new CongruenceSide<float>(MakeCongruenceSide<float>(measure, n, p)));
}

PhylogeneticSignal MakeRoom(const TestRecord& in) {
    return {0.0,     nullptr, nullptr, nullptr, nullptr, ScopedVector<const float*>(in.nOTUs),
            nullptr, nullptr};
}

void MakeRoomForScores(const TestRecord& in, PhylogeneticSignal* signal) {
    signal->sideScores = MakeSide(in.opt_ro, in.nOTUs, in.nPhylAxes);
    signal->scratch.reset(new CongruenceScratch<float>(
        MakeCongruenceScratch<float>(in.opt_ro, in.nOTUs, in.nTraits, in.nPhylAxes)));
}

void MakeRoomForPairs(const TestRecord& in, PhylogeneticSignal* signal) {
    if (AreLookedUp(*signal))
        signal->terms.reset(new ScopedMatrix<double>(OrdersTogether(in.nOTUs), in.nOTUs));
    if (signal->pairs && signal->pairs->plain)
        signal->permutedSf.reset(new ScopedMatrix<double>(in.nOTUs, in.nOTUs));
}

double ObservedSignal(const TestRecord& in, PhylogeneticSignal* signal) {
    if (in.opt_ro == kMantel) {
        const double correlation = MatrixCorr(in.nOTUs, in.Sb, in.Sf);
        return SignalIsTurned(in) ? -correlation : correlation;
    }
    ScopedMatrix<float> normalised(in.nOTUs, in.nTraits);
    NormalizeCols(in.nOTUs, in.nTraits, in.B, normalised);
    SetCongruenceSide<float>(normalised, signal->sideB.get());
    SetCongruenceSide<float>(in.PhylScores, signal->sideScores.get());
    return Congruence(*signal->sideB, *signal->sideScores, signal->scratch.get());
}

}  // namespace

bool SignalIsTurned(const TestRecord& in) {
    return in.opt_ro == kMantel && in.phylogenyIsDissimilarity;
}

PhylogeneticSignal MakePhylogeneticSignal(const TestRecord& in) {
    PhylogeneticSignal signal = MakeRoom(in);
    if (in.opt_ro != kMantel) {
        signal.sideB = MakeSide(in.opt_ro, in.nOTUs, in.nTraits);
        MakeRoomForScores(in, &signal);
    }
    signal.observed = ObservedSignal(in, &signal);
    return signal;
}

PhylogeneticSignal ShareSignal(const TestRecord& in, const PhylogeneticSignal& first) {
    PhylogeneticSignal signal = MakeRoom(in);
    signal.pairs = first.pairs;
    signal.sideB = first.sideB;
    if (in.opt_ro == kProcrustes) MakeRoomForScores(in, &signal);
    MakeRoomForPairs(in, &signal);
    return signal;
}

void PreparePermutedSignal(const TestRecord& in, PhylogeneticSignal* signal) {
    if (in.opt_ro == kProcrustes) return;
    signal->pairs = MakeSignalOfPairs(in.nOTUs);
    if (in.opt_ro == kMantel)
        PrepareCorrelation(in, signal->pairs.get());
    else
        PrepareRV(*signal, signal->pairs.get());
    MakeRoomForPairs(in, signal);
}

void SignalsAhead(const Orders& orders, PhylogeneticSignal* signal) {
    if (!AreLookedUp(*signal)) return;
    const int n = orders.n;
    for (int otu = 0; otu < n; otu++) {
        const double* row = signal->pairs->phylogeny + static_cast<std::ptrdiff_t>(otu) * n;
        for (int k = 0; k < orders.count; k++) {
            const int i = orders.placeOf[k][otu];
            (*signal->terms)[k][i] = TermOfPlace(n, *signal->pairs, orders.otuOf[k], i, row);
        }
    }
}

double PermutedSignal(const TestRecord& in, const Orders& orders, int order,
                      PhylogeneticSignal* signal) {
    const int n = in.nOTUs;
    const int* list = orders.lists[order];
    if (in.opt_ro == kProcrustes) {
        for (int i = 0; i < n; i++) signal->permutedScores[i] = in.PhylScores[list[i] - 1];
        SetCongruenceSide<float>(signal->permutedScores, signal->sideScores.get());
        return Congruence(*signal->sideB, *signal->sideScores, signal->scratch.get());
    }
    const SignalOfPairs& pairs = *signal->pairs;
    if (pairs.plain) {
        PermuteBoth<double>(n, list, in.Sf, *signal->permutedSf);
        return MatrixCorr(n, in.Sb, *signal->permutedSf);
    }
    if (!AreLookedUp(*signal)) return 0.0;
    double sum = 0.0;
    for (int i = 0; i < n; i++) sum += (*signal->terms)[order][i];
    return sum * pairs.scale;
}
