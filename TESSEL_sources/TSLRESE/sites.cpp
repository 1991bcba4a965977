#include "TSLRESE/sites.h"

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlib/ordination.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/standardisation.h"

namespace {

/// Several units, or several kinds none of which is nominal: columns are brought to one scale.
bool SitesNeedOneScale() {
    return optEnvVarType == 2 || optEnvVarType == 4 || (optEnvVarType == 5 && temEnvQual == 0);
}

}  // namespace

template <class T>
void TakeSites(Matrix<T> E) {
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < nenv; j++) E[i][j] = env[i][j];
}

template <class T>
void CompareSites(Matrix<T> E, void (*distances)(int n, int p, ConstMatrix<T> a, Matrix<double> d),
                  Matrix<double> DE) {
    if (optEnvVarType == 1 || SitesNeedOneScale()) {
        if (optEnvVarType != 1) CorrAdj(ncsm, nenv, E, E);
        distances(ncsm, nenv, E, DE);
        return;
    }
    GowerMVOpt(ncsm, nenv, envVarType, E, DE, nullptr, nullptr, countDoubleAbsence);
    ProbToDissim(ncsm, DE, DE);
}

template void TakeSites<float>(Matrix<float>);
template void TakeSites<double>(Matrix<double>);
template void CompareSites<float>(Matrix<float>,
                                  void (*)(int, int, ConstMatrix<float>, Matrix<double>),
                                  Matrix<double>);
template void CompareSites<double>(Matrix<double>,
                                   void (*)(int, int, ConstMatrix<double>, Matrix<double>),
                                   Matrix<double>);
