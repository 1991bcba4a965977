#include <cfloat>

#include "mxlibRes/congruence.h"
#include "mxlibRes/totals.h"

namespace {

double NearestDistance(int n, int i, const double* distances) {
    double nearest = DBL_MAX;
    for (int j = 0; j < n; j++)
        if (j != i && distances[j] < nearest) nearest = distances[j];
    return nearest;
}

}  // namespace

bool BetaDivergence(int n, Matrix<double> d1, Matrix<double> d2, double* means) {
    UpperToLowerMatrix(n, d1);
    UpperToLowerMatrix(n, d2);
    for (int i = 0; i < n; i++) {
        const double nearest = NearestDistance(n, i, d1[i]);
        double sum = 0.0;
        int neighbours = 0;
        for (int j = 0; j < n; j++) {
            if (j == i || d1[i][j] != nearest) continue;
            sum += d2[i][j];
            neighbours++;
        }
        means[i] = sum / neighbours;
    }
    return true;
}
