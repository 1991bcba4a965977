#pragma once
/// \file
/// A Mersenne Twister (Matsumoto and Nishimura 1998, ACM Transactions on Modeling and Computer
/// Simulation 8, 3-30) that makes its numbers a block at a time, and draws that take them where
/// they lie. Its stream is that of gsl_rng_mt19937 for every seed.

#include <gsl/gsl_rng.h>

#include <cstdint>

struct Twister {
    static constexpr int kSize = 624;
    std::uint32_t words[kSize];
    std::uint32_t numbers[kSize];  ///< made of the words
    int next;                      ///< of the numbers; kSize when all are drawn
};

/// For gsl_rng_alloc, gsl_rng_set and every function of the library that draws.
extern const gsl_rng_type kTwister;

/// Seeds a twister by a key of two words, as init_by_array of its authors (mt19937ar.c, 2002) does:
/// other keys give other states.
void SeedTwister(Twister* twister, std::uint32_t first, std::uint32_t second);

/// The next words and numbers.
void RenewTwister(Twister* twister);

inline std::uint32_t NextNumber(Twister* twister) {
    if (twister->next == Twister::kSize) RenewTwister(twister);
    return twister->numbers[twister->next++];
}
inline double NextUniform(Twister* twister) {
    return NextNumber(twister) / 4294967296.0;
}

/// As gsl_rng_uniform: from 0 to below 1. Here and below the generator is a kTwister.
inline double DrawUniform(const gsl_rng* generator) {
    return NextUniform(static_cast<Twister*>(generator->state));
}

/// As gsl_rng_uniform_int: from 0 to n - 1, for n of at least 1.
inline std::uint32_t DrawBelow(const gsl_rng* generator, std::uint32_t n) {
    const std::uint32_t scale = 0xffffffffU / n;
    std::uint32_t k = n;
    while (k >= n) k = NextNumber(static_cast<Twister*>(generator->state)) / scale;
    return k;
}
