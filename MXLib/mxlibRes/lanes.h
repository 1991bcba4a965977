#pragma once
/// \file
/// Vectors of 32 bytes for inner loops, which the compiler splits where registers are narrower. A
/// loop exists once as a body and is compiled for the plain and for the wide registers: the same
/// operations in the same order, hence the same digits. They pass by reference, since how they pass
/// by value depends on the processor.

#define INLINE_BODY [[gnu::always_inline]] inline

/// Before a loop over an array of vectors, which then lies in registers.
#define UNROLL _Pragma("GCC unroll 8")

typedef double Lanes __attribute__((vector_size(32)));
typedef float FloatLanes __attribute__((vector_size(32)));
typedef float HalfLanes
    __attribute__((vector_size(16)));  ///< as many floats as a Lanes has doubles
typedef long long LongLanes __attribute__((vector_size(32)));
typedef int IntLanes __attribute__((vector_size(32)));

inline constexpr int kLanes = 4;
inline constexpr int kFloatLanes = 8;

/// The vector of a T.
template <class T>
struct LanesOf;
template <>
struct LanesOf<double> {
    using Type = Lanes;
    static constexpr int kWidth = kLanes;
};
template <>
struct LanesOf<float> {
    using Type = FloatLanes;
    static constexpr int kWidth = kFloatLanes;
};

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
