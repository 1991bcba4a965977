#pragma once
/// \file
/// Vectors for inner loops, as wide as a register: wider ones would lie on the stack. A loop exists
/// once, as a body over some Registers, and is compiled for each kind of processor: the same
/// operations in the same order, hence the same digits. Vectors pass by reference, since how they
/// pass by value depends on the processor.

#include <cstddef>
#include <utility>

#define INLINE_BODY [[gnu::always_inline]] inline

/// Before a loop over an array of vectors, which then lies in registers.
#define UNROLL _Pragma("GCC unroll 16")

/// Registers of so many bytes, and how many doubles and floats they hold.
template <int bytes>
struct Registers {
    static constexpr int kBytes = bytes;
    template <class T>
    struct Of {
        typedef T Lanes __attribute__((vector_size(bytes)));
    };
    using Doubles = typename Of<double>::Lanes;
    using Floats = typename Of<float>::Lanes;
    typedef float Halves
        __attribute__((vector_size(bytes / 2)));  ///< as many floats as Doubles has doubles
    static constexpr int kDoubles = bytes / 8;
    static constexpr int kFloats = bytes / 4;
};
using PlainRegisters = Registers<16>;  ///< of any processor
using WideRegisters = Registers<32>;
using WidestRegisters = Registers<64>;

/// R, or what of it holds few places.
template <class R>
using AtMost32 = Registers<(R::kBytes < 32 ? R::kBytes : 32)>;

template <class R, class T>
using LanesOf = typename R::template Of<T>::Lanes;

/// Numbers of type T in a vector.
template <class Vector, class T>
inline constexpr int kCountOf = sizeof(Vector) / sizeof(T);

/// A vector from any address, and to any.
template <class Vector, class T>
INLINE_BODY Vector& Load(const T* from, Vector& lanes) {
    __builtin_memcpy(&lanes, from, sizeof(Vector));
    return lanes;
}

template <class Vector, class T>
INLINE_BODY void Store(const Vector& lanes, T* to) {
    __builtin_memcpy(to, &lanes, sizeof(Vector));
}

/// The lanes kAt of a and b, which count on from those of a.
template <int... kAt, class Vector>
INLINE_BODY void Shuffle(const Vector& a, const Vector& b, Vector* lanes) {
#if __has_builtin(__builtin_shufflevector)
    *lanes = __builtin_shufflevector(a, b, kAt...);
#else
    *lanes = __builtin_shuffle(a, b, decltype(a == b){kAt...});
#endif
}

// One lane by the other, which compilers understand better than a conversion of the whole.
template <int kFrom, class Floats, class Doubles, size_t... kAt>
INLINE_BODY void WidenLanes(const Floats& x, std::index_sequence<kAt...>, Doubles* wide) {
    *wide = Doubles{static_cast<double>(x[kFrom + kAt])...};
}
/// Halves in double precision.
template <class Halves, class Doubles>
INLINE_BODY void Widen(const Halves& x, Doubles* wide) {
    WidenLanes<0>(x, std::make_index_sequence<kCountOf<Doubles, double>>(), wide);
}
/// Floats in double precision, two vectors.
template <class Floats, class Doubles>
INLINE_BODY void WidenBoth(const Floats& x, Doubles* wide) {
    constexpr int kDoubles = kCountOf<Doubles, double>;
    WidenLanes<0>(x, std::make_index_sequence<kDoubles>(), wide);
    WidenLanes<kDoubles>(x, std::make_index_sequence<kDoubles>(), wide + 1);
}

template <class Halves, class Floats, size_t... kAt>
INLINE_BODY void JoinLanes(const Halves& a, const Halves& b, std::index_sequence<kAt...>,
                           Floats* whole) {
#if __has_builtin(__builtin_shufflevector)
    *whole = __builtin_shufflevector(a, b, kAt...);
#else
    constexpr size_t kHalf = sizeof...(kAt) / 2;
    *whole = Floats{(kAt < kHalf ? a[kAt % kHalf] : b[kAt % kHalf])...};
#endif
}
/// The lanes of a, then those of b.
template <class Halves, class Floats>
INLINE_BODY void Join(const Halves& a, const Halves& b, Floats* whole) {
    JoinLanes(a, b, std::make_index_sequence<kCountOf<Floats, float>>(), whole);
}

template <class Doubles, size_t... kAt>
INLINE_BODY void RootLanes(std::index_sequence<kAt...>, Doubles* x) {
    *x = Doubles{__builtin_sqrt((*x)[kAt])...};
}
template <class Doubles>
INLINE_BODY void Root(Doubles* x) {
    RootLanes(std::make_index_sequence<kCountOf<Doubles, double>>(), x);
}
