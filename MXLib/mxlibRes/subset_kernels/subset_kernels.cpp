#include "mxlibRes/subset_kernels.h"

#include "mxlibRes/subset_kernels/chains.h"
#include "mxlibRes/subset_kernels/distances.h"
#include "mxlibRes/subset_kernels/layers.h"
#include "mxlibRes/subset_kernels/otu_sums.h"

namespace {

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute takes none
#define TYPED_KERNELS(TARGET, R, T, NAME)                                                         \
    TARGET void Euclidean##NAME(int n, int p, const T* const* columns, double* cells) {           \
        DistancesBody<true, R>(n, p, columns, cells);                                             \
    }                                                                                             \
    TARGET void Absolute##NAME(int n, int p, const T* const* columns, double* cells) {            \
        DistancesBody<false, AtMost32<R>>(n, p, columns, cells);                                  \
    }                                                                                             \
    TARGET void SparseRows##NAME(int slices, const std::ptrdiff_t* start, const int* at,          \
                                 const T* weights, const int* row, const T* table, int width,     \
                                 T* rows) {                                                       \
        SparseRowsBody<AtMost32<R>>(slices, start, at, weights, row, table, width, rows);         \
    }                                                                                             \
    TARGET void MemberMeans##NAME(int n, int size, const int* members, const float* const* s,     \
                                  T* mean) {                                                      \
        MemberMeansBody<AtMost32<R>>(n, size, members, s, mean);                                  \
    }                                                                                             \
    TARGET void UnitSums##NAME(int n, int p, int stride, T* columns) {                            \
        UnitSumsBody<AtMost32<R>>(n, p, stride, columns);                                         \
    }                                                                                             \
    constexpr TypedSubsetKernels<T> k##NAME = {Euclidean##NAME, Absolute##NAME, SparseRows##NAME, \
                                               MemberMeans##NAME, UnitSums##NAME};

#define SUBSET_KERNELS(TARGET, R)                                                                  \
    TYPED_KERNELS(TARGET, R, float, Float)                                                         \
    TYPED_KERNELS(TARGET, R, double, Double)                                                       \
    TARGET void Sums(int chains, std::ptrdiff_t m, const double* const* x, double* sums,           \
                     bool* hasMissing) {                                                           \
        SumsBody<AtMost32<R>>(chains, m, x, sums, hasMissing);                                     \
    }                                                                                              \
    TARGET void Products(int chains, std::ptrdiff_t m, const double* const* x,                     \
                         const double* meanX, const double* const* y, const double* meanY,         \
                         double* sums) {                                                           \
        ProductsBody<AtMost32<R>>(chains, m, x, meanX, y, meanY, sums);                            \
    }                                                                                              \
    TARGET void ObjectProducts(int n, int p, const float* const* columns, double* cells) {         \
        ObjectProductsBody<AtMost32<R>>(n, p, columns, cells);                                     \
    }                                                                                              \
    TARGET bool SameAsOne(int from, int to, const float* row, const int* types, int type) {        \
        return SameAsOneBody<AtMost32<R>>(from, to, row, types, type);                             \
    }                                                                                              \
    TARGET void AddLayer(std::ptrdiff_t m, const double* from, const float* layer, double* to) {   \
        AddLayerBody<false, AtMost32<R>>(m, from, nullptr, layer, to, nullptr);                    \
    }                                                                                              \
    TARGET void AddLayerMV(std::ptrdiff_t m, const double* from, const float* counts,              \
                           const float* layer, double* to, float* toCounts) {                      \
        AddLayerBody<true, AtMost32<R>>(m, from, counts, layer, to, toCounts);                     \
    }                                                                                              \
    TARGET void Averages(int tiles, const double* sums, const float* layer, float count,           \
                         float* s) {                                                               \
        AveragesBody<false, AtMost32<R>>(tiles, sums, nullptr, count, layer, s);                   \
    }                                                                                              \
    TARGET void AveragesMV(int tiles, const double* sums, const float* counts, const float* layer, \
                           float* s) {                                                             \
        AveragesBody<true, AtMost32<R>>(tiles, sums, counts, 0.0F, layer, s);                      \
    }                                                                                              \
    constexpr SubsetKernels kKernels = {Sums,       Products, ObjectProducts, SameAsOne, AddLayer, \
                                        AddLayerMV, Averages, AveragesMV,     kFloat,    kDouble};
// NOLINTEND(bugprone-macro-parentheses)

namespace plain {
SUBSET_KERNELS(, PlainRegisters)
}
#if defined(__x86_64__)
namespace wide {
SUBSET_KERNELS([[gnu::target("avx2")]], WideRegisters)
}
namespace widest {
SUBSET_KERNELS([[gnu::target("avx512f,avx512vl,avx512dq")]], WidestRegisters)
}
#endif

}  // namespace

const SubsetKernels& SubsetKernelsOfRegisters([[maybe_unused]] int bytes) {
#if defined(__x86_64__)
    if (bytes == 64) return widest::kKernels;
    if (bytes == 32) return wide::kKernels;
#endif
    return plain::kKernels;
}
