#pragma once
/// \file
/// Dispatch of the resemblance measures between communities.

#include "mxlibDim/dim.h"

/// Measure number of ResemblanceLib for a resemblance option 1 to 10; 1 outside. 7 and 9 map to 0,
/// no measure.
int TranslateReseOpt_TESSEL_POLYAX(int option);

/// Resemblance between the `rows` of data (orientation 1; else between its columns), both halves of
/// the result. Measure 2 AbsValFunctionMV, 3 EucliDistMV, 18 ChordDistMV; 0 computes nothing: the
/// result keeps its upper half. Missing values by the rule of each (distances.h). power, types, the
/// two numbers and the flags belong to measures that no option reaches. Returns 1.
int ResemblanceLib(int rows, int cols, ConstMatrix<double> data, Matrix<double> result,
                   int orientation, int measure, double power, const int* types, double number1,
                   double number2, int doubleAbsences, bool flag);
