#pragma once
/// \file
/// Processes that compute together (MPI; without it there is one, of rank 0). All run the same
/// commands on the same data in the same order; rank 0 alone reads and writes files, hands out the
/// work and takes its results in order, so that nothing depends on the number of ranks or on who
/// was first.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

int Rank();
int Ranks();
inline bool IsFirstRank() {
    return Rank() == 0;
}

/// To be called first, with the arguments of main; the end of the process ends its part.
void JoinRanks(int* argc, char*** argv);

/// Ends all processes at once.
[[noreturn]] void EndRanks(int status);

/// What rank 0 gives, to all. To be called by all of them.
std::string ShareBytes(const std::string& bytes);
std::int64_t ShareNumber(std::int64_t number);

/// Runs `body` with Ranks() at 1: it hands out and shares nothing.
void RunAlone(const std::function<void()>& body);

/// A file that rank 0 has opened to read from its beginning, or could not open (null, with errno):
/// the others get a copy of their own, which goes with its stream, or null and the same errno.
FILE* ShareFile(FILE* opened);

/// A stretch of the items of some work: items first to first + count - 1.
struct WorkStretch {
    std::int64_t first;
    std::int64_t count;
};

/// Work on items 0 to `items` - 1, to be called by all ranks. `work` gives what a stretch comes to,
/// as bytes; each rank is asked for stretches that ascend. Their length follows their measured
/// cost. `take` is called on rank 0 alone, with one stretch after the other in the order of the
/// items. An error that `work` or `take` throws leaves HandOut on its rank, which has to end all.
/// `work` runs alone (RunAlone).
void HandOut(std::int64_t items, const std::function<std::string(const WorkStretch&)>& work,
             const std::function<void(const WorkStretch&, const std::string&)>& take);
