// The inner loops by the width of the registers, side by side, on tables of the size of aravo.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "mxlibRes/kernels.h"
#include "mxlibRes/subset_kernels.h"

namespace {

constexpr int kObjects = 75, kColumns = 8, kCells = kObjects * (kObjects - 1) / 2;
constexpr int kSpecies = 88, kStride = kObjects + kOverrun;

struct Tables {
    std::vector<double> x, result;
    std::vector<float> narrow, narrowResult;
    std::vector<const double*> columns;
    std::vector<const float*> rows;
    std::vector<double*> results;
    std::vector<int> at;

    Tables() {
        for (int k = 0; k < 10 * kCells; k++) {
            x.push_back(k * 7919 % 1009 / 1e3);
            narrow.push_back(float(x.back()));
            at.push_back(k * 31 % kSpecies);
        }
        result = x;
        narrowResult = narrow;
        for (int k = 0; k < kSpecies; k++) {
            columns.push_back(x.data() + k * kStride);
            rows.push_back(narrow.data() + k * kStride);
            results.push_back(result.data() + k * kStride);
        }
    }
} t;

template <class Loop>
void Register(int bytes, const std::string& name, Loop loop) {
    const std::string full = "kernel/" + name + "/" + std::to_string(bytes);
    benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
            loop();
            benchmark::ClobberMemory();
        }
    });
}

void RegisterLoops(int bytes) {
    const Kernels* k = &KernelsOfRegisters(bytes);
    const SubsetKernels* s = &SubsetKernelsOfRegisters(bytes);
    const double *x = t.x.data(), *const *columns = t.columns.data();
    const float *narrow = t.narrow.data(), *const *rows = t.rows.data();
    const int* at = t.at.data();
    double* to = t.result.data();
    float* narrowTo = t.narrowResult.data();
    Register(bytes, "euclidean", [=] { k->euclidean(kObjects, kColumns, x, kStride, to); });
    Register(bytes, "dot", [=] { benchmark::DoNotOptimize(k->dot(kCells, x, x + kCells)); });
    Register(bytes, "centreAndDots",
             [=] { k->centreAndDots(kCells, 1e-9, to, 3, columns, to + kCells); });
    Register(bytes, "weightedRows", [=] { k->weightedRows(30, at, x, x, 20, to); });
    Register(bytes, "columnProducts",
             [=] { k->columnProducts(40, 60, columns, kColumns, columns, t.results.data()); });
    Register(bytes, "products", [=] { s->products(8, kCells, columns, x, columns, x, to); });
    Register(bytes, "objectProducts", [=] { s->objectProducts(kObjects, kColumns, rows, to); });
    Register(bytes, "euclideanF", [=] { s->ofFloat.euclidean(kObjects, 4, rows, to); });
    Register(bytes, "euclideanD", [=] { s->ofDouble.euclidean(kObjects, 4, columns, to); });
    Register(bytes, "memberMeans", [=] { s->ofFloat.memberMeans(80, 10, at, rows, narrowTo); });
    Register(bytes, "averages",
             [=] { s->averages(kSpecies / kTileSide, x, narrow, 3.0F, narrowTo); });
}

const bool registered = [] {
    for (int bytes = 16; bytes <= BytesOfRegisters(); bytes *= 2) RegisterLoops(bytes);
    return true;
}();

}  // namespace
