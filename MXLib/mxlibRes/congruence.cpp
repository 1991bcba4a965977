#include "mxlibRes/congruence.h"

#include "mxlibRes/congruence_kernels.h"

namespace {

template <class T>
double Coefficient(int measure, int n, int p1, int p2, ConstMatrix<T> a, ConstMatrix<T> b) {
    CongruenceSide<T> sideA = MakeCongruenceSide<T>(measure, n, p1);
    CongruenceSide<T> sideB = MakeCongruenceSide<T>(measure, n, p2);
    CongruenceScratch<T> scratch = MakeCongruenceScratch<T>(measure, n, p1, p2);
    SetCongruenceSide(a, &sideA);
    SetCongruenceSide(b, &sideB);
    return Congruence(sideA, sideB, &scratch);
}

}  // namespace

float ProcrustesCoeff(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b) {
    return static_cast<float>(Coefficient(kProcrustes, n, p1, p2, a, b));
}
double ProcrustesCoeff(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b) {
    return Coefficient(kProcrustes, n, p1, p2, a, b);
}

double RVcoeff(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b) {
    return Coefficient(kRV, n, p1, p2, a, b);
}
double RVcoeff(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b) {
    return Coefficient(kRV, n, p1, p2, a, b);
}
