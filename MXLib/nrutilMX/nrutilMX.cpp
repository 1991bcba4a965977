#include "nrutilMX/nrutilMX.h"

#include <cstdio>

#include "mxlibDim/failure.h"
#include "mxlibDim/standard_streams.h"

void nrerror(const char* text) {
    std::fprintf(ErrorStream(), "%s\n", text);
    EndProgram(1);
}

void Convertn_n1(int n, int p, ConstMatrix<double> a, Matrix<double> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) b[i + 1][j + 1] = a[i][j];
}

void Convertn1_n(int n, int p, ConstMatrix<double> a, Matrix<double> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) b[i][j] = a[i + 1][j + 1];
}
