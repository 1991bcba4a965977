#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "iflibG/iflibG.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/text.h"

int is40CharLine = 0;
int is80CharLine = 0;
std::int64_t t2 = 0;
void (*progressHook)(std::int64_t steps) = nullptr;

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr int kHalfLine = 40;
constexpr int kTicksBetweenUpdates = 5;
constexpr char kBackspace = 8;

/// What a terminal shows while a long step lasts. The thread only ever rewrites the progress line,
/// so that the line goes on where a step is a single call of a library.
struct Live {
    std::mutex mutex;  ///< of the line and of all below
    std::condition_variable wake;
    bool ends = false;
    char text[kHalfLine + 1] = "";
    SteadyClock::time_point since;
    SteadyClock::time_point drawn;
    bool drewLast = false;  ///< the line that stands was drawn by the thread
    std::thread thread;
};

const std::thread::id firstThread = std::this_thread::get_id();
std::atomic<std::int64_t> stepsOfOthers = 0;

bool IsFirstThread() {
    return std::this_thread::get_id() == firstThread;
}

Live* live = nullptr;  // left as it is where the process ends within a step
const LongStep* innermost = nullptr;

bool ScreenIsTerminal() {
    return IsTerminal(ScreenStream());
}

std::unique_lock<std::mutex> LockLine() {
    return live != nullptr ? std::unique_lock(live->mutex) : std::unique_lock<std::mutex>();
}

void Draw(const char* text, const char* behind) {
    if (is40CharLine == 1) ClearLineLength(is80CharLine == 1 ? 2 * kHalfLine : kHalfLine);
    std::fprintf(ScreenStream(), "%*.*s", kHalfLine, kHalfLine, text);
    std::fprintf(ScreenStream(), "%-*.*s", kHalfLine, kHalfLine, behind);
    is40CharLine = 1;
    is80CharLine = 1;
    FlushScreen();
}

void SetText(const char* text) {
    CopyText(live->text, kHalfLine, text);
    live->since = SteadyClock::now();
}

void DrawElapsed(Live* shown) {
    const std::chrono::duration<double> elapsed = SteadyClock::now() - shown->since;
    char behind[kHalfLine + 1];
    std::snprintf(behind, sizeof behind, "  %.1f s", elapsed.count());
    Draw(shown->text, behind);
    shown->drewLast = true;
}

/// Where the loops of the program draw often enough themselves, the line is theirs.
void KeepDrawing(Live* shown) {
    constexpr auto kPause = std::chrono::milliseconds(400);
    std::unique_lock lock(shown->mutex);
    while (!shown->wake.wait_for(lock, kPause, [shown] { return shown->ends; }))
        if (SteadyClock::now() - shown->drawn >= kPause) DrawElapsed(shown);
}

void StartLive() {
    live = new Live;
    try {
        live->thread = std::thread(KeepDrawing, live);
    } catch (const std::system_error&) {
        delete std::exchange(live, nullptr);
    }
}

void EndLive() {
    {
        const auto lock = LockLine();
        live->ends = true;
    }
    live->wake.notify_one();
    live->thread.join();
    if (live->drewLast && is40CharLine == 1) {
        Draw("", "");
        ClearLine();
    }
    delete std::exchange(live, nullptr);
}

}  // namespace

void ClearLineLength(int n) {
    for (int i = 0; i < n; i++) std::fputc(kBackspace, ScreenStream());
}

void ClearLine() {
    const auto lock = LockLine();
    if (is40CharLine == 1) ClearLineLength(kHalfLine);
    is40CharLine = 0;
    if (is80CharLine == 1) ClearLineLength(kHalfLine);
    is80CharLine = 0;
}

void CountSteps(std::int64_t steps) {
    if (!IsFirstThread())
        stepsOfOthers += steps;
    else if (progressHook != nullptr)
        progressHook(steps + stepsOfOthers.exchange(0));
}

void HandleEventInfoWhere2(const char* text, std::int64_t steps) {
    CountSteps(steps);
    if (!IsFirstThread()) return;
    const std::int64_t now = ClockTicks();
    if (now - t2 < kTicksBetweenUpdates) return;
    const auto lock = LockLine();
    Draw(text, "");
    t2 = now;
    if (live == nullptr) return;
    SetText(text);
    live->drawn = live->since;
    live->drewLast = false;
}

bool ProgressPace::AskClock() {
    constexpr int kLongestStride = 8;
    if (!IsFirstThread()) return false;
    const std::int64_t now = ClockTicks();
    stride_ = now == asked_ ? std::min(2 * stride_, kLongestStride) : 1;
    stepsToAsk_ = stride_;
    asked_ = now;
    return now - t2 >= kTicksBetweenUpdates;
}

LongStep::LongStep(const char* name) : name_(name), outer_(IsFirstThread() ? innermost : nullptr) {
    if (!IsFirstThread()) return;
    if (live == nullptr && ScreenIsTerminal()) StartLive();
    if (live == nullptr) return;
    innermost = this;
    const auto lock = LockLine();
    SetText(name);
}

LongStep::~LongStep() {
    if (!IsFirstThread() || innermost != this) return;
    innermost = outer_;
    if (outer_ == nullptr) {
        EndLive();
    } else {
        const auto lock = LockLine();
        SetText(outer_->name_);
    }
}
