#include "mxlibOut/mxlibOut.h"

#include <algorithm>
#include <climits>

#include "iflibG/iflibG.h"
#include "mxlibDim/text.h"

int maxColsPrint = INT_MAX;

namespace {

// Report numbers are printed with "%g", which takes a double: both element types print alike.

template <class T>
void PrintRows(FILE* stream, int rows, int cols, ConstMatrix<T> matrix, int digits) {
    digits = std::min(digits, kMostDigits);
    for (int i = 0; i < rows; i++) {
        for (int j = 0; j < cols; j++)
            std::fprintf(stream, "%.*g\t", digits, Printable(matrix[i][j]));
        std::fputc('\n', stream);
    }
}

template <class T>
int WidestElement(int rows, int cols, ConstMatrix<T> matrix, int digits) {
    digits = std::min(digits, kMostDigits);
    HandleEventInfoWhere("GetWidthMax");
    int widest = 0;
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) {
            const double value = Printable(matrix[i][j]);
            const int length = std::snprintf(nullptr, 0, "%.*g", digits, value);
            if (length > widest) widest = length;
        }
    return widest;
}

template <class T>
int PrintAligned(FILE* stream, int rows, int cols, ConstMatrix<T> matrix, int digits, int width) {
    digits = std::min(digits, kMostDigits);
    HandleEventInfoWhere("PrintMatrix");
    if (width == 0) width = WidestElement(rows, cols, matrix, digits);
    for (int i = 0; i < rows; i++) {
        long long column = 0;
        for (int j = 0; j < cols; j++) {
            if (column > maxColsPrint) {
                std::fprintf(stream, "\n%*s\t", width, "");
                column = 0;
            }
            column += width + 1;
            std::fprintf(stream, "%*.*g\t", width, digits, Printable(matrix[i][j]));
        }
        std::fputc('\n', stream);
    }
    return width;
}

template <class T>
void PrintLowerHalf(FILE* stream, int n, ConstMatrix<T> matrix, int digits) {
    HandleEventInfoWhere("PrintLowerHalfMatrixTab");
    for (int i = 0; i < n; i++) PrintRows<T>(stream, 1, i + 1, matrix + i, digits);
}

/// Element i of a vector in the order of the list, if there is one.
template <class T>
T Ordered(const T* values, const int* order, int i) {
    return order == nullptr ? values[i] : values[order[i] - 1];
}

template <class T>
void PrintNumbers(FILE* stream, int n, const T* values, int digits, const int* order) {
    digits = std::min(digits, kMostDigits);
    HandleEventInfoWhere("PrintVectorTab");
    for (int i = 0; i < n; i++)
        std::fprintf(stream, "%.*g\t", digits, Printable(Ordered(values, order, i)));
    std::fputc('\n', stream);
}

}  // namespace

void PrintMatrixTab(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits) {
    PrintRows(stream, rows, cols, matrix, digits);
}

void PrintMatrixTab(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits) {
    PrintRows(stream, rows, cols, matrix, digits);
}

int GetWidthMax(int rows, int cols, ConstMatrix<float> matrix, int digits) {
    return WidestElement(rows, cols, matrix, digits);
}

int GetWidthMax(int rows, int cols, ConstMatrix<double> matrix, int digits) {
    return WidestElement(rows, cols, matrix, digits);
}

int PrintMatrix(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits,
                int width) {
    return PrintAligned(stream, rows, cols, matrix, digits, width);
}

int PrintMatrix(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits,
                int width) {
    return PrintAligned(stream, rows, cols, matrix, digits, width);
}

int PrintMatrixFloat(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits,
                     int width) {
    return PrintAligned(stream, rows, cols, matrix, digits, width);
}

int PrintMatrixFloat(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits,
                     int width) {
    return PrintAligned(stream, rows, cols, matrix, digits, width);
}

void PrintLowerHalfMatrixTab(FILE* stream, int n, ConstMatrix<float> matrix, int digits) {
    PrintLowerHalf(stream, n, matrix, digits);
}

void PrintLowerHalfMatrixTab(FILE* stream, int n, ConstMatrix<double> matrix, int digits) {
    PrintLowerHalf(stream, n, matrix, digits);
}

void PrintVectorTab(FILE* stream, int n, const int* values, const int* order) {
    HandleEventInfoWhere("PrintVectorTab");
    for (int i = 0; i < n; i++) std::fprintf(stream, "%d\t", Ordered(values, order, i));
    std::fputc('\n', stream);
}

void PrintVectorTab(FILE* stream, int n, const float* values, int digits, const int* order) {
    PrintNumbers(stream, n, values, digits, order);
}

void PrintVectorTab(FILE* stream, int n, const double* values, int digits, const int* order) {
    PrintNumbers(stream, n, values, digits, order);
}
