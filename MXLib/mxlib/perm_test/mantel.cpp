#include "mxlib/perm_test/mantel.h"

#include <algorithm>
#include <cmath>

#include "mxlib/resemblance_lib.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"

namespace {

enum Measure : int {
    kNoMeasure = 0,
    kAbsoluteMeasure = 2,
    kEuclideanMeasure = 3,
    kChordMeasure = 18
};

/// Matrix correlation is defined from three communities on; entropies always take it.
bool IsSmallSample(const TestRecord& in) {
    return in.nCommunities < 3;
}

int MeasureOf(const TestRecord& in, Letter letter) {
    if (letter == kT) return kEuclideanMeasure;
    if (letter == kR || letter == kF) return kAbsoluteMeasure;
    return TranslateReseOpt_TESSEL_POLYAX(in.rese_opt);
}

/// The rule of MatrixCorr on two vectors of cells.
double CorrelationOfPresent(std::ptrdiff_t m, const double* a, const double* b) {
    double meanA = 0.0, meanB = 0.0;
    std::ptrdiff_t count = 0;
    for (std::ptrdiff_t k = 0; k < m; k++) {
        if (IsMissing(a[k]) || IsMissing(b[k])) continue;
        meanA += a[k];
        meanB += b[k];
        count++;
    }
    meanA /= static_cast<double>(count);
    meanB /= static_cast<double>(count);
    double squaresA = 0.0, squaresB = 0.0, products = 0.0;
    for (std::ptrdiff_t k = 0; k < m; k++) {
        if (IsMissing(a[k]) || IsMissing(b[k])) continue;
        squaresA += (a[k] - meanA) * (a[k] - meanA);
        squaresB += (b[k] - meanB) * (b[k] - meanB);
        products += (a[k] - meanA) * (b[k] - meanB);
    }
    if (squaresA == 0 || squaresB == 0) return 0.0;
    return products / std::sqrt(squaresA * squaresB);
}

void TakeFixed(const TestRecord& in, Letter letter, ConstMatrix<double> d, MantelPairs* m) {
    CellsAbove<double>(in.nCommunities, d, m->cells[letter]);
    const double* cells = m->cells[letter];
    m->hasMissing[letter] = HasMissing(1, m->nCells, &cells);
    if (m->hasMissing[letter] || IsSmallSample(in)) return;
    const Kernels& kernels = KernelsOfProcessor();
    const double mean = kernels.sum(m->nCells, cells) / static_cast<double>(m->nCells);
    m->squares[letter] = kernels.centre(m->nCells, mean, m->cells[letter]);
}

/// Column by column, the places past the objects being 0. Returns whether a value is missing.
bool TakeColumns(int n, int p, ConstMatrix<double> a, MantelPairs* m) {
    bool missing = false;
    for (int j = 0; j < p; j++) {
        double* column = m->columns + static_cast<std::ptrdiff_t>(j) * m->stride;
        for (int i = 0; i < n; i++) {
            column[i] = a[i][j];
            missing |= IsMissing(a[i][j]);
        }
    }
    return missing;
}

void UnitLengthOfObjects(int n, int p, MantelPairs* m) {
    for (int i = 0; i < n; i++) {
        double* x = m->columns + i;
        double squares = 0.0;
        for (int j = 0; j < p; j++) {
            const double value = x[static_cast<std::ptrdiff_t>(j) * m->stride];
            squares += value * value;
        }
        const double length = squares > 0 ? std::sqrt(squares) : 1.0;
        for (int j = 0; j < p; j++) x[static_cast<std::ptrdiff_t>(j) * m->stride] /= length;
    }
}

void MakeCells(const TestRecord& in, const Arrangement& now, Letter letter, MantelPairs* m) {
    const int n = in.nCommunities;
    const int p = ColumnsOf(in, letter);
    const int measure = MeasureOf(in, letter);
    double* cells = m->cells[letter];
    if (measure == kNoMeasure) {
        std::fill_n(cells, m->nCells, 0.0);
        return;
    }
    const Kernels& kernels = KernelsOfProcessor();
    const bool missing = TakeColumns(n, p, MatrixOf(in, now, letter), m);
    if (!missing && measure == kAbsoluteMeasure) {
        kernels.absolute(n, p, m->columns, m->stride, cells);
    } else if (!missing && (measure == kEuclideanMeasure || measure == kChordMeasure)) {
        if (measure == kChordMeasure) UnitLengthOfObjects(n, p, m);
        kernels.euclidean(n, p, m->columns, m->stride, cells);
    } else {
        CommunityResemblance(in, now, letter, m->square);
        CellsAbove<double>(n, m->square, cells);
    }
}

/// What two communities have in place of a correlation, and data with missing values.
double PairOfCells(const TestRecord& in, const PairStatistic& pair, const MantelPairs& m) {
    const double* a = m.cells[pair.a];
    const double* b = m.cells[pair.b];
    const bool ofEntropy = pair.block == kBlockR || pair.block == kBlockF;
    if (!IsSmallSample(in)) return CorrelationOfPresent(m.nCells, a, b);
    if (ofEntropy) return m.nCells < 1 ? 0.0 : CorrelationOfPresent(m.nCells, a, b);
    return m.nCells < 1 ? SmallSampleCongruence(0.0, 0.0) : SmallSampleCongruence(*a, *b);
}

double CorrelationOf(double products, double squaresA, double squaresB) {
    return squaresA == 0 || squaresB == 0 ? 0.0 : products / std::sqrt(squaresA * squaresB);
}

/// Centres the cells just made and sums their products with the other side of each pair of the
/// block, a piece of cells after the other while it is at hand.
void CorrelateCells(Block block, MantelPairs* m, Statistics* s) {
    constexpr std::ptrdiff_t kPiece = 1024;
    constexpr int kMostOthers = 4;
    const Letter made = MadeIn(block);
    const PairStatistic* pairs[kMostOthers];
    const double* others[kMostOthers];
    int count = 0;
    for (const PairStatistic& pair : kPairStatistics)
        if (pair.block == block) pairs[count++] = &pair;
    const auto otherOf = [made](const PairStatistic& pair) {
        return pair.a == made ? pair.b : pair.a;
    };
    const Kernels& kernels = KernelsOfProcessor();
    double* cells = m->cells[made];
    const double mean = kernels.sum(m->nCells, cells) / static_cast<double>(m->nCells);
    double sums[1 + kMostOthers] = {};
    for (std::ptrdiff_t from = 0; from < m->nCells; from += kPiece) {
        double ofPiece[1 + kMostOthers];
        for (int k = 0; k < count; k++) others[k] = m->cells[otherOf(*pairs[k])] + from;
        kernels.centreAndDots(std::min(kPiece, m->nCells - from), mean, cells + from, count, others,
                              ofPiece);
        for (int k = 0; k <= count; k++) sums[k] += ofPiece[k];
    }
    m->squares[made] = sums[0];
    for (int k = 0; k < count; k++)
        (*s)[pairs[k]->result] =
            CorrelationOf(sums[1 + k], sums[0], m->squares[otherOf(*pairs[k])]);
}

int WidestVarying(const TestRecord& in) {
    int widest = 1;
    for (const Letter letter : {kT, kX, kP}) widest = std::max(widest, ColumnsOf(in, letter));
    return widest;
}

}  // namespace

MantelPairs MakeMantelPairs(const TestRecord& in, const MantelPairs* first) {
    const int n = in.nCommunities;
    const std::ptrdiff_t nCells = CountCellsAbove(n);
    const std::ptrdiff_t places = nCells + kOverrun;
    const int stride = n + kOverrun;
    MantelPairs m{nCells,
                  stride,
                  first != nullptr ? first->fixed
                                   : std::make_shared<ScopedMatrix<double>>(kFixedLetters, places),
                  ScopedMatrix<double>(kLetters - kFixedLetters, places),
                  {},
                  {},
                  {},
                  ScopedVector<double>(static_cast<std::ptrdiff_t>(stride) * WidestVarying(in)),
                  ScopedMatrix<double>(n, n)};
    for (int k = 0; k < kLetters; k++)
        m.cells[k] = k < kFixedLetters ? (*m.fixed)[k] : m.varying[k - kFixedLetters];
    if (first != nullptr) {
        m.squares = first->squares;
        m.hasMissing = first->hasMissing;
        return m;
    }
    TakeFixed(in, kE, in.DE, &m);
    TakeFixed(in, kZ, in.DZ, &m);
    TakeFixed(in, kY, in.DY, &m);
    return m;
}

void CommunityResemblance(const TestRecord& in, const Arrangement& now, Letter letter,
                          Matrix<double> d) {
    const int n = in.nCommunities;
    if (MeasureOf(in, letter) == kNoMeasure)
        for (int i = 0; i < n; i++) std::fill_n(d[i], n, 0.0);
    ResemblanceLib(n, ColumnsOf(in, letter), MatrixOf(in, now, letter), d, 1, MeasureOf(in, letter),
                   0.0, nullptr, 0.0, 0.0, 0, false);
}

void MantelBlock(const TestRecord& in, const Arrangement& now, Block block, MantelPairs* m,
                 Statistics* s) {
    const Letter made = MadeIn(block);
    MakeCells(in, now, made, m);
    if (!IsSmallSample(in)) CorrelateCells(block, m, s);
    for (const PairStatistic& pair : kPairStatistics)
        if (pair.block == block &&
            (IsSmallSample(in) || m->hasMissing[pair.a] || m->hasMissing[pair.b]))
            (*s)[pair.result] = PairOfCells(in, pair, *m);
    for (const PartialOfPairs& partial : kPartialsOfPairs)
        if (partial.block == block)
            (*s)[partial.result] =
                PartialCorrelation((*s)[partial.xy], (*s)[partial.xz], (*s)[partial.yz]);
}
