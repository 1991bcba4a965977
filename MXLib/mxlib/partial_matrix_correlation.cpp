#include "mxlib/partial_matrix_correlation.h"

#include <algorithm>

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
    if (sets.size() > 0) {
        StartCovariables(&room->factors);
        for (const CovariableSet& set : sets)
            AddCovariables(set.columns, set.matrix, set.select, &room->factors);
        constexpr int kCorrelations = 2;
        FindComponents(kCorrelations, overfit, &room->factors);
        ComponentResiduals(room->a.p, a, room->residuals, &room->factors);
    }
    SetCongruenceSide<double>(room->residuals, &room->a);
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
