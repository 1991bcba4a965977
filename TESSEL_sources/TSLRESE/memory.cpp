#include "TSLRESE/memory.h"

#include <algorithm>
#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlibDim/available_memory.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibPar/side_by_side.h"

namespace {

/// A table of row pointers, each row with what the allocator adds.
double Rows(double rows, double cols, double size) {
    constexpr double kPerRow = 24.0;
    return rows * (kPerRow + cols * size);
}

constexpr double kFloat = sizeof(float);
constexpr double kDouble = sizeof(double);
constexpr double kProgram = 4e6;  // code that is read in, buffers

/// What lives from the start to the end (ScalingUpMatrices).
double OfMatrices(double n, double c, const AnalysisSizes& s) {
    double bytes = Rows(n, n, kFloat) + 2.0 * Rows(n, s.types, kDouble);  // Sb, U and C
    bytes += 4.0 * Rows(c, n, kDouble);                                   // W twice, Z, Y
    bytes += (s.measure == kMantel ? 4.0 : 2.0) * Rows(c, c, kDouble);    // DE, DT; DZ, DY
    if (s.taxa > 0) bytes += Rows(n, s.taxa, kDouble) + Rows(c, c, kDouble);
    if (s.coordinates) bytes += Rows(n, n, kFloat);
    return bytes;
}

/// The largest of what the steps before the test hold for a while.
double OfSteps(double n, double c, const AnalysisSizes& s) {
    const double smoothing = Rows(n, n, kDouble) + Rows(c, n, kDouble);
    const double coordinates = 4.0 * Rows(n, n, kFloat) + 2.0 * Rows(n, n, kDouble);
    return s.coordinates ? std::max(smoothing, coordinates) : smoothing;
}

/// The phylogenetic signal: its sides and what the permutations look up.
double OfSignal(double n, const AnalysisSizes& s) {
    const double half = n * n / 2.0 * kDouble;
    double bytes = s.permutations > 0 && s.measure != kProcrustes ? 3.0 * half : 0.0;
    if (s.measure == kMantel && s.permutations > 0) bytes += half;
    if (s.measure == kProcrustes) bytes += Rows(n, n, kFloat);
    if (s.measure == kRV) bytes += 2.0 * Rows(n, n, kFloat) + 2.0 * half;
    return bytes;
}

/// Procrustes and RV: Z, Y and their residuals made ready, and for each set of covariables room for
/// responses as wide.
double OfMatrixPairs(double n, double c, const AnalysisSizes& s) {
    const double sets = s.taxa > 0 ? 5.0 : 2.0;
    const double narrow = s.measure == kRV ? std::min(n, c) : 0.0;
    return (5.0 + sets) * Rows(c, n, kDouble) + 4.0 * Rows(narrow, narrow, kDouble);
}

/// A table that lies idle but for the first page of each row.
double IdleRows(double rows, double cols) {
    constexpr double kPage = 4096.0;
    return rows * std::min(cols * kDouble, kPage);
}

/// What the permutation test holds: differences between OTUs, an idle table in their order, and
/// what the measure compares.
double OfTest(double n, double c, const AnalysisSizes& s) {
    const double differences = s.permutations > 0 ? n * n * kDouble : 0.0;
    double bytes = IdleRows(n, n) + differences;
    if (s.taxa > 0) bytes += differences + OfSignal(n, s);
    return bytes + (s.measure == kMantel ? 4.0 * c * c * kDouble + Rows(c, c, kDouble)
                                         : OfMatrixPairs(n, c, s));
}

/// What each further thread of the test takes for itself: the idle table, and what changes from one
/// permutation to the next.
double OfFurtherThread(double n, double c, const AnalysisSizes& s) {
    double bytes = IdleRows(n, n);
    if (s.measure == kMantel) return bytes + 2.5 * c * c * kDouble + IdleRows(c, c);
    if (s.measure == kProcrustes && s.taxa > 0) bytes += Rows(n, n, kFloat);
    return bytes + (s.taxa > 0 ? 8.0 : 5.0) * IdleRows(c, n);
}

}  // namespace

AnalysisSizes SizesOfAnalysis() {
    const int taxa = includePhylogeny != 0 ? nTaxa : 0;
    return {tcst, ncsm, nGrPoly[0], taxa, opt_ro, niter - 1, ReadsCoordinates()};
}

double MemoryOfAnalysis(const AnalysisSizes& sizes) {
    const double n = sizes.OTUs;
    const double c = sizes.communities;
    const int further = std::clamp(sizes.permutations, 1, Threads()) - 1;
    return kProgram + OfMatrices(n, c, sizes) +
           std::max(OfSteps(n, c, sizes),
                    OfTest(n, c, sizes) + further * OfFurtherThread(n, c, sizes));
}

void TellLargeMemory(double bytes) {
    constexpr double kGigabyte = 1e9;
    const double available = AvailableMemory();
    if (available > 0.0 && bytes > available / 2.0)
        std::fprintf(ErrorStream(),
                     "\nThis analysis takes about %.1f GB of memory; %.1f GB are free.\n",
                     bytes / kGigabyte, available / kGigabyte);
}
