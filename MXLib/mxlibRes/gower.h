#pragma once
/// \file
/// Gower's general similarity (Gower 1971, Biometrics 27, 857-871) between the n rows of a matrix
/// of p variables of types 1 binary, 2 nominal, 3 interval or ratio, 4 ordinal. Variables missing
/// in either row do not count for the pair; a pair without a comparable variable leaves its cell as
/// it was. Both halves are written, the diagonal is 1. With float data each difference is taken in
/// float; sums are double.

#include <cmath>

#include "mxlibDim/dim.h"
#include "mxlibRes/missing.h"

/// Types of variables; any other code takes part in no comparison.
enum VariableType : int {
    kBinaryVariable = 1,
    kNominalVariable = 2,
    kIntervalVariable = 3,
    kOrdinalVariable = 4
};

/// Ordinal columns are replaced by their ranks in `data` itself, and stay so. Ranges of types 3 and
/// 4 are always computed from the data (`ranges` is ignored; the running maximum starts at the
/// smallest positive double). `weights` may be null: all 1. Matching absences of a binary variable
/// count when `countDoubleAbsences` is not 0.
void GowerMVOpt(int n, int p, const int* types, Matrix<float> data, Matrix<double> similarity,
                const float* ranges, const float* weights, int countDoubleAbsences);
void GowerMVOpt(int n, int p, const int* types, Matrix<double> data, Matrix<double> similarity,
                const float* ranges, const float* weights, int countDoubleAbsences);

/// The same with types 1, 2 and 3 only, a supplied range array honoured (null: computed in float),
/// and matching absences never counted.
void GowerMV(int n, int p, const int* types, ConstMatrix<float> data, Matrix<float> similarity,
             const float* ranges, const float* weights);

/// Range of a variable from its present values, as GowerMVOpt computes it: a variable without a
/// positive value has the smallest positive double for its maximum.
float VariableRange(int n, const float* values);

/// Whether a variable counts for two objects with values xi and xj; if so, `contribution` is what
/// it adds to the sum of the pair: the variable's weight w for a match, 0 for none, in proportion
/// in between. A range of 0 or less is a match.
template <class T>
bool GowerPart(int type, T xi, T xj, float range, float variableWeight, bool countDoubleAbsences,
               double* contribution) {
    if (IsMissing(xi) || IsMissing(xj)) return false;
    const double w = static_cast<double>(variableWeight);
    switch (type) {
        case kIntervalVariable:
        case kOrdinalVariable: {
            const double difference = std::fabs(static_cast<double>(xi - xj));
            *contribution = range > 0 ? (1.0 - difference / static_cast<double>(range)) * w : w;
            return true;
        }
        case kNominalVariable:
            *contribution = xi == xj ? w : 0.0;
            return true;
        case kBinaryVariable:
            if (xi == 0 && xj == 0 && !countDoubleAbsences) return false;
            *contribution = xi == xj ? w : 0.0;
            return true;
        default:
            return false;
    }
}
