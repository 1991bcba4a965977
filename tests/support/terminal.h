#pragma once
/// \file
/// A process at a terminal of its own, with a person who types and reads.

#include <functional>
#include <string>

#include "support/temp_folder.h"

class Terminal {
  public:
    explicit Terminal(
        const std::function<void()>& child);      ///< what the process does, until it ends
    explicit Terminal(const TempFolder& folder);  ///< the built program
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void Type(const std::string& answers) const;
    /// Reads until the screen shows `text` behind what it showed in an earlier call; false when the
    /// process ends or the time is over before.
    bool Shows(const std::string& text, double seconds = 30);
    /// Reads to the end of the process and tells its exit status; -1 when it does not exit.
    int Finish();
    void Kill() const;

    std::string screen;         ///< all that was written, standard error too
    double longestSilence = 0;  ///< between two pieces of it, in seconds

  private:
    bool Read(double seconds);

    int master_;
    int child_;
    std::size_t seen_ = 0;
};
