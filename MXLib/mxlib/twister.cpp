#include "mxlib/twister.h"

namespace {

constexpr int kSize = Twister::kSize;
constexpr int kFar = 397;

std::uint32_t Twist(std::uint32_t word, std::uint32_t after, std::uint32_t far) {
    const std::uint32_t y = (word & 0x80000000U) | (after & 0x7fffffffU);
    return far ^ (y >> 1) ^ ((y & 1U) != 0 ? 0x9908b0dfU : 0U);
}

std::uint32_t Temper(std::uint32_t x) {
    x ^= x >> 11;
    x ^= (x << 7) & 0x9d2c5680U;
    x ^= (x << 15) & 0xefc60000U;
    return x ^ (x >> 18);
}

std::uint32_t Spread(std::uint32_t before) {
    return before ^ (before >> 30);
}

void Seed(void* state, unsigned long seed) {
    constexpr std::uint32_t kDefaultSeed = 4357;
    auto* const twister = static_cast<Twister*>(state);
    std::uint32_t* const w = twister->words;
    w[0] = static_cast<std::uint32_t>(seed);
    if (seed == 0) w[0] = kDefaultSeed;
    for (std::uint32_t k = 1; k < kSize; k++) w[k] = 1812433253U * Spread(w[k - 1]) + k;
    twister->next = kSize;
}

unsigned long Get(void* state) {
    return NextNumber(static_cast<Twister*>(state));
}

double GetDouble(void* state) {
    return NextUniform(static_cast<Twister*>(state));
}

}  // namespace

const gsl_rng_type kTwister = {"mt19937", 0xffffffffUL, 0, sizeof(Twister), Seed, Get, GetDouble};

void SeedTwister(Twister* twister, std::uint32_t first, std::uint32_t second) {
    constexpr unsigned long kStart = 19650218;
    Seed(twister, kStart);
    const std::uint32_t key[] = {first, second};
    std::uint32_t* const w = twister->words;
    int i = 1;
    const auto goOn = [&] {
        if (++i < kSize) return;
        w[0] = w[kSize - 1];
        i = 1;
    };
    for (std::uint32_t k = 0; k < kSize; k++, goOn())
        w[i] = (w[i] ^ (Spread(w[i - 1]) * 1664525U)) + key[k % 2] + k % 2;
    for (int k = 1; k < kSize; k++, goOn())
        w[i] = (w[i] ^ (Spread(w[i - 1]) * 1566083941U)) - static_cast<std::uint32_t>(i);
    w[0] = 0x80000000U;
}

void RenewTwister(Twister* twister) {
    std::uint32_t* const w = twister->words;
    for (int k = 0; k < kSize - kFar; k++) w[k] = Twist(w[k], w[k + 1], w[k + kFar]);
    for (int k = kSize - kFar; k < kSize - 1; k++)
        w[k] = Twist(w[k], w[k + 1], w[k + kFar - kSize]);
    w[kSize - 1] = Twist(w[kSize - 1], w[0], w[kFar - 1]);
    for (int k = 0; k < kSize; k++) twister->numbers[k] = Temper(w[k]);
    twister->next = 0;
}
