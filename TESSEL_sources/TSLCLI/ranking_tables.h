#pragma once
/// \file
/// The tables of a ranking of trait subsets, and its test.

#include <span>
#include <string>
#include <vector>

#include "TSLCHORD/search_frame.h"
#include "TSLCLI/names.h"
#include "TSLCLI/rank_checkpoint.h"
#include "TSLCLI/result_folder.h"

/// Files that a ranking may write.
inline constexpr auto kRankingTables = {"ranked.csv", "best.csv", "test.csv", "null.csv"};

/// What a search found, kept beyond its end.
struct RankingResults {
    struct Subset {
        int size;
        double value;
        std::vector<int> members;  ///< traits from 0
    };
    Keeping keeping;
    std::vector<Subset> ranked;  ///< the best of all, best first
    std::vector<Subset> best;    ///< of each size that has one
    std::vector<double> values;  ///< BestValues
};
RankingResults ResultsOf(const SubsetSearch& search, const SearchOutcome& outcome);

/// ranked.csv and best.csv: a row per subset with a column of 0 and 1 for each trait.
void WriteSubsets(const RankingResults& results, const FullNames& names, ResultFolder* folder);

/// Tests the search (search_test.h) with that many permutations, as the checkpoint follows it;
/// test.csv and null.csv. The probabilities, in the order of the values.
std::vector<double> TestRanking(const RankingResults& results, int permutations,
                                const FullNames& names, ResultFolder* folder,
                                RankCheckpoint* checkpoint);
