#include "iflibG/iflibG.h"

int is40CharLine = 0;
int is80CharLine = 0;
std::clock_t t1 = 0;
std::clock_t t2 = 0;
std::time_t timeStart = 0;
void (*progressHook)() = nullptr;

namespace {

constexpr int kHalfLine = 40;
constexpr int kTicksBetweenUpdates = 5;
constexpr char kBackspace = 8;

}  // namespace

void InitIFLibG() {
    is40CharLine = 0;
    is80CharLine = 0;
    t1 = t2 = std::clock();
    timeStart = std::time(nullptr);
}

void ClearLineLength(int n) {
    for (int i = 0; i < n; i++) std::fputc(kBackspace, stdout);
}

void ClearLine() {
    if (is40CharLine == 1) ClearLineLength(kHalfLine);
    is40CharLine = 0;
    if (is80CharLine == 1) ClearLineLength(kHalfLine);
    is80CharLine = 0;
}

void HandleEventInfoWhere(const char*) {}

void HandleEventInfoWhere2(const char* text) {
    if (progressHook != nullptr) progressHook();
    const std::clock_t now = std::clock();
    if (now - t2 < kTicksBetweenUpdates) return;
    if (is40CharLine == 1) ClearLineLength(is80CharLine == 1 ? 2 * kHalfLine : kHalfLine);
    std::printf("%*.*s", kHalfLine, kHalfLine, text);
    std::printf("%*.*s", kHalfLine, kHalfLine, "");
    t2 = now;
    is40CharLine = 1;
    is80CharLine = 1;
    std::fflush(stdout);
}

void TimeStamp(FILE* stream) {
    const std::time_t now = std::time(nullptr);
    std::fputs(std::ctime(&now), stream);
}

double difftime_Clock(double x) {
    return x;
}
