#include "TSLCLI/progress.h"

#include <chrono>
#include <cmath>
#include <cstdio>

#include "TSLCLI/failure.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/terminal.h"

bool progressInLines = false;

namespace {

using Clock = std::chrono::steady_clock;

struct Run {
    double steps = 0.0;
    double done = 0.0;
    Clock::time_point start, shown;
};
Run run;

/// The engine's own standard error may be kept from the user.
void WriteLine(const char* format, const char* text) {
    char line[96];
    std::snprintf(line, sizeof line, format, text);
    std::fputs(line, stderr);
}

constexpr const char* kOverLine = "\r\033[K%s";

void Show(Clock::time_point now) {
    const double seconds = std::chrono::duration<double>(now - run.start).count();
    const double left = std::ceil(seconds * (run.steps - run.done) / run.done);
    char text[80];
    if (progressInLines) {
        std::snprintf(text, sizeof text, "%.4f %.0f", run.done / run.steps, left);
        return WriteLine("progress %s\n", text);
    }
    const int hours = static_cast<int>(std::fmin(left / 3600, 9999));
    const int rest = static_cast<int>(std::fmod(left, 3600));
    std::snprintf(text, sizeof text, "%3.0f %% done, %d:%02d:%02d left",
                  std::floor(100 * run.done / run.steps), hours, rest / 60, rest % 60);
    WriteLine(kOverLine, text);
}

void TakeSteps(std::int64_t steps) {
    constexpr auto kBetween = std::chrono::milliseconds(100);
    run.done += static_cast<double>(steps);
    const auto now = Clock::now();
    if (now - run.shown < kBetween || run.done > run.steps) return;
    run.shown = now;
    Show(now);
}

}  // namespace

Progress::Progress(double steps) {
    if (!progressInLines && (quiet || !SpeaksToPerson())) return;
    run = {steps, 0.0, Clock::now(), Clock::now()};
    progressHook = TakeSteps;
}

Progress::~Progress() {
    if (progressHook != TakeSteps) return;
    progressHook = nullptr;
    if (!progressInLines) WriteLine(kOverLine, "");
}
