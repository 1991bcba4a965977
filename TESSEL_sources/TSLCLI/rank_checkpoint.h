#pragma once
/// \file
/// The checkpoints of a ranking: of its search, then of the searches of its test.

#include <cstdint>
#include <string>
#include <vector>

#include "TSLCHORD/search_test.h"
#include "TSLCLI/checkpoint.h"

class RankCheckpoint {
  public:
    /// Takes up what is in the file. The search of a run that writes each subset begins anew.
    RankCheckpoint(const std::string& path, std::uint64_t digest, bool writesSubsets);

    bool GoesOn() const { return goesOn_; }

    /// Lets the search go on where it was, and follows it.
    void Follow(SearchRun* run);
    /// The same of the test; `each` of the run gets the best values of former permutations first.
    void Follow(TestRun* run);

    void Remove() { file_.Remove(); }

  private:
    static SearchPlace TakeSearch(CheckpointNumbers* numbers, SearchOutcome* outcome);
    void SaveIfDue(const SearchPlace& place, const SearchOutcome& outcome);

    Checkpoint file_;
    const bool writesSubsets_;
    bool goesOn_ = false;
    bool tests_ = false;                     ///< the search is done
    CheckpointNumbers search_;               ///< the one under way, to go on with; empty: none
    CheckpointNumbers observed_;             ///< the search that is done; empty: it is not kept
    TestState state_;                        ///< before the permutation under way
    std::vector<std::vector<double>> rows_;  ///< best values of its forerunners
};
