#include "iflibG/iflibG.h"

std::int64_t t1 = 0;
std::time_t timeStart = 0;

std::int64_t ClockTicks() {
    constexpr std::int64_t kTicksPerSecond = 60;
    constexpr std::int64_t kNanosecondsPerTick = 1000000000 / kTicksPerSecond + 1;
#ifdef CLOCK_MONOTONIC_COARSE
    constexpr clockid_t kClock = CLOCK_MONOTONIC_COARSE;  // a few nanoseconds to ask
#else
    constexpr clockid_t kClock = CLOCK_MONOTONIC;
#endif
    timespec now = {};
    clock_gettime(kClock, &now);
    return static_cast<std::int64_t>(now.tv_sec) * kTicksPerSecond +
           static_cast<std::int64_t>(now.tv_nsec) / kNanosecondsPerTick;
}

void InitIFLibG() {
    is40CharLine = 0;
    is80CharLine = 0;
    t1 = t2 = ClockTicks();
    timeStart = std::time(nullptr);
}

void HandleEventInfoWhere(const char*) {}

void TimeStamp(FILE* stream) {
    const std::time_t now = std::time(nullptr);
    std::fputs(std::ctime(&now), stream);
}

double difftime_Clock(double x) {
    return x;
}
