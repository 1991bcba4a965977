#include "mxlib/partial_matrix_correlation.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// The components of the sets, and the residuals of a on them made ready.
void TakeResidualsOfA(ConstMatrix<double> a, double overfit,
                      std::initializer_list<CovariableSet> sets, PartialCorrelationRoom* room) {
    if (sets.size() > 0) {
        StartCovariables(&room->factors);
        for (const CovariableSet& set : sets)
            AddCovariables(set.columns, set.matrix, set.select, &room->factors);
        constexpr int kCorrelations = 2;
        FindComponents(kCorrelations, overfit, &room->factors);
        ComponentResiduals(room->a.p, a, room->residuals, &room->factors);
    }
    SetCongruenceSide<double>(room->residuals, &room->a);
}

double SquaresOfDeviations(int n, int p, ConstMatrix<double> x) {
    double squares = 0.0;
    for (int j = 0; j < p; j++) {
        double mean = 0.0;
        for (int i = 0; i < n; i++) mean += x[i][j] / n;
        for (int i = 0; i < n; i++) squares += (x[i][j] - mean) * (x[i][j] - mean);
    }
    return squares;
}

}  // namespace

PartialCorrelationRoom MakePartialCorrelationRoom(int n, int p1, int p2, int covariables,
                                                  int type) {
    return {MakeComponentFactors(n, covariables, std::max(p1, p2)),
            ScopedMatrix<double>(n, std::max(p1, p2)), MakeCongruenceSide<double>(type, n, p1),
            MakeCongruenceSide<double>(type, n, p2),
            MakeCongruenceScratch<double>(type, n, p1, p2)};
}

double PartialMatrixCorrelation(ConstMatrix<double> a, ConstMatrix<double> b, double overfit,
                                std::initializer_list<CovariableSet> sets,
                                PartialCorrelationRoom* room) {
    TakeResidualsOfA(a, overfit, sets, room);
    if (sets.size() > 0) ComponentResiduals(room->b.p, b, room->residuals, &room->factors);
    SetCongruenceSide<double>(room->residuals, &room->b);
    return Congruence(room->a, room->b, &room->scratch);
}

double PartialMatrixCorrelation(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b,
                                int type, double overfit,
                                std::initializer_list<CovariableSet> sets) {
    int covariables = 0;
    for (const CovariableSet& set : sets) covariables += set.columns;
    PartialCorrelationRoom room =
        MakePartialCorrelationRoom(n, p1, p2, covariables, type == kRV ? kRV : kProcrustes);
    return PartialMatrixCorrelation(a, b, overfit, sets, &room);
}

FixedMatrix MakeFixedMatrix(ConstMatrix<double> b, int covariables,
                            const PartialCorrelationRoom& room) {
    const CongruenceSide<double>& like = room.b;
    FixedMatrix fixed{MakeCongruenceSide<double>(like.measure, like.n, like.p), 0.0,
                      MakeProjection(like.measure, like.n, covariables, like.p, room.a.p)};
    SetCongruenceSide<double>(b, &fixed.side);
    fixed.squares = SquaresOf(fixed.side);
    return fixed;
}

double EstimatedPartialCorrelation(ConstMatrix<double> a, double overfit,
                                   std::initializer_list<CovariableSet> sets, FixedMatrix* b,
                                   PartialCorrelationRoom* room) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kLeastShare = 1e-8;  // eight digits of sixteen go with what was taken away
    TakeResidualsOfA(a, overfit, sets, room);
    const int n = room->a.n;
    const int p = room->a.p;
    if (!(SquaresOfDeviations(n, p, room->residuals) >= kLeastShare * SquaresOfDeviations(n, p, a)))
        return kNaN;
    const double r = CongruenceOfResiduals(room->a, b->side, b->squares, room->factors,
                                           &b->projection, &room->scratch);
    return r == 0.0 ? kNaN : r;  // what a decomposition that fails gives too
}
