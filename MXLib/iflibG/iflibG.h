#pragma once
/// \file
/// The console's progress line, the clock, the time stamp.

#include <cstdint>
#include <cstdio>
#include <ctime>

/// State of the progress line, owned by this unit.
extern int is40CharLine;       ///< 1 when the text of the progress line stands on the console
extern int is80CharLine;       ///< 1 when its second half of 40 columns does
extern std::int64_t t1;        ///< ClockTicks at start
extern std::int64_t t2;        ///< ClockTicks at the last update of the line
extern std::time_t timeStart;  ///< wall clock at start

/// The steady clock in ticks of a sixtieth of a second; it runs whoever computes.
std::int64_t ClockTicks();

/// Clears the flags and takes both clocks.
void InitIFLibG();

/// Takes the progress line off the console: 40 backspaces for each flag that is set, cleared on the
/// way. The characters stay until what follows overwrites them.
void ClearLine();

/// Writes n backspaces to standard output; nothing for n below 1.
void ClearLineLength(int n);

/// The point where routines announce themselves. Does nothing.
void HandleEventInfoWhere(const char* text);

/// Called at every report of progress with the steps that it stands for, however short the time
/// since the last; null for nothing. A harness bounds the work of a run by it and may leave by an
/// exception. Progress is told by the thread alone that the program began with: steps of others
/// wait for its next report.
extern void (*progressHook)(std::int64_t steps);

/// Hands steps to progressHook without a text.
void CountSteps(std::int64_t steps);

/// Rewrites the progress line with `text` in 40 columns and 40 blanks, unless fewer than 5 clock
/// ticks have passed since the last time.
void HandleEventInfoWhere2(const char* text, std::int64_t steps = 1);

/// Tells a loop of short steps when its text is worth making. While the steps are far shorter than
/// a tick, the clock is not asked at each of them.
class ProgressPace {
  public:
    /// To be called at each step, or for a few at once: whether HandleEventInfoWhere2 would show a
    /// text now.
    bool IsDue(std::int64_t steps = 1) {
        if (--stepsToAsk_ <= 0 && AskClock()) return true;
        CountSteps(steps);
        return false;
    }

  private:
    bool AskClock();

    int stepsToAsk_ = 1;
    int stride_ = 1;
    std::int64_t asked_ = 0;  ///< clock when it was asked last
};

/// A step that may take long, named, for as long as its scope lasts. Where the screen is a
/// terminal, the progress line tells the name, or the text of HandleEventInfoWhere2 once there is
/// one, and how long it has stood, twice a second: someone waits there. Elsewhere it does nothing.
/// Steps may lie in each other; nothing but the progress line may be printed in them.
class LongStep {
  public:
    explicit LongStep(const char* name);
    ~LongStep();
    LongStep(const LongStep&) = delete;
    LongStep& operator=(const LongStep&) = delete;

  private:
    const char* name_;
    const LongStep* outer_;  ///< the step around it, or null
};

/// The current local date and time as ctime gives them, with its newline.
void TimeStamp(FILE* stream);

/// `x` itself: seconds of wall clock need no conversion.
double difftime_Clock(double x);
