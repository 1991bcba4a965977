#pragma once
/// \file
/// How far a command is: one line on standard error, for a person at a terminal.

/// Shows the share of the run that is done and the time that is left, some ten times a second,
/// for as long as the scope lasts; nothing with --quiet or where nobody reads. One at a time.
///
/// With progressInLines, for whoever runs the program for a person: lines "progress SHARE SECONDS",
/// the share that is done from 0 to 1 and the seconds that are left, --quiet or not.
class Progress {
  public:
    /// `steps`: how often the run reports its progress (HandleEventInfoWhere2).
    explicit Progress(double steps);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
};

extern bool progressInLines;  ///< --progress-lines
