#include "mxlib/subset_screen/root_sums.h"

#include "mxlibRes/kernels.h"
#include "mxlibRes/lanes.h"

namespace {

template <class Floats, size_t... kAt>
INLINE_BODY void FloatRootLanes(std::index_sequence<kAt...>, Floats* x) {
    *x = Floats{__builtin_sqrtf((*x)[kAt])...};
}

template <class Doubles>
INLINE_BODY double SumOfLanes(const Doubles& x) {
    double sum = 0.0;
    for (int l = 0; l < kCountOf<Doubles, double>; l++) sum += x[l];
    return sum;
}

template <int kSides, class R>
INLINE_BODY void RootSumsBody(std::ptrdiff_t m, const float* a, const float* b, const float* first,
                              const float* second, double* sums) {
    using Floats = typename R::Floats;
    typename R::Doubles total[kSides + 1] = {};
    for (std::ptrdiff_t from = 0; from < m;) {
        Floats chain[kSides + 1] = {};
        for (int s = 0; s < kRootSumChain && from < m; s++, from += R::kFloats) {
            Floats x, y;
            Floats d = Load(a + from, x) + Load(b + from, y);
            FloatRootLanes(std::make_index_sequence<R::kFloats>(), &d);
            chain[0] += d;
            chain[1] += d * Load(first + from, y);
            if constexpr (kSides > 1) chain[2] += d * Load(second + from, y);
        }
        UNROLL
        for (int s = 0; s <= kSides; s++) {
            typename R::Doubles wide[2];
            WidenBoth(chain[s], wide);
            total[s] += wide[0] + wide[1];
        }
    }
    for (int s = 0; s <= kSides; s++) sums[s] = SumOfLanes(total[s]);
}

template <class R>
INLINE_BODY void RootSumsOfSides(std::ptrdiff_t m, const float* a, const float* b,
                                 const float* first, const float* second, double* sums) {
    if (second == nullptr)
        RootSumsBody<1, R>(m, a, b, first, second, sums);
    else
        RootSumsBody<2, R>(m, a, b, first, second, sums);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] void WideRootSums(std::ptrdiff_t m, const float* a, const float* b,
                                          const float* first, const float* second, double* sums) {
    RootSumsOfSides<WideRegisters>(m, a, b, first, second, sums);
}
[[gnu::target("avx512f,avx512vl,avx512dq")]] void WidestRootSums(std::ptrdiff_t m, const float* a,
                                                                 const float* b, const float* first,
                                                                 const float* second,
                                                                 double* sums) {
    RootSumsOfSides<WidestRegisters>(m, a, b, first, second, sums);
}
#endif

}  // namespace

void RootSums(std::ptrdiff_t m, const float* a, const float* b, const float* first,
              const float* second, double* sums) {
#if defined(__x86_64__)
    if (BytesOfRegisters() == 64) return WidestRootSums(m, a, b, first, second, sums);
    if (BytesOfRegisters() == 32) return WideRootSums(m, a, b, first, second, sums);
#endif
    RootSumsOfSides<PlainRegisters>(m, a, b, first, second, sums);
}
