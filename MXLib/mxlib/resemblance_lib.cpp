#include "mxlib/resemblance_lib.h"

#include "mxlibDim/scoped.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/totals.h"

namespace {

enum Measure : int { kAbsoluteValue = 2, kEuclideanDistance = 3, kChordDistance = 18 };

constexpr int kOptions = 10;
constexpr int kMeasureOfOption[kOptions] = {0, 0, 1, 0, 17, 3, 0, 2, 0, 18};

void FillUpperHalf(int n, int p, ConstMatrix<double> data, Matrix<double> result, int measure) {
    switch (measure) {
        case kAbsoluteValue:
            AbsValFunctionMV(n, p, data, result);
            break;
        case kEuclideanDistance:
            EucliDistMV(n, p, data, result);
            break;
        case kChordDistance:
            ChordDistMV(n, p, data, result);
            break;
        default:
            break;
    }
}

}  // namespace

int TranslateReseOpt_TESSEL_POLYAX(int option) {
    return option >= 1 && option <= kOptions ? kMeasureOfOption[option - 1] : 1;
}

int ResemblanceLib(int rows, int cols, ConstMatrix<double> data, Matrix<double> result,
                   int orientation, int measure, double /*power*/, const int* /*types*/,
                   double /*number1*/, double /*number2*/, int /*doubleAbsences*/, bool /*flag*/) {
    if (orientation == 1) {
        FillUpperHalf(rows, cols, data, result, measure);
        UpperToLowerMatrix(rows, result);
    } else {
        ScopedMatrix<double> columns(cols, rows);
        TransposeMatrix(rows, cols, data, columns);
        FillUpperHalf(cols, rows, columns, result, measure);
        UpperToLowerMatrix(cols, result);
    }
    return 1;
}
