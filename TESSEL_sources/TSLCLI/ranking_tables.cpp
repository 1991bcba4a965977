#include "TSLCLI/ranking_tables.h"

#include <algorithm>
#include <optional>

#include "TSLCHORD/search_test.h"
#include "TSLCLI/csv_writer.h"
#include "TSLCLI/null_values.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlib/subsets.h"

namespace {

using Names = std::vector<std::string>;
using Subset = RankingResults::Subset;

Subset KeptAt(const KeptSubsets& kept, int place) {
    Subset subset = {kept.size[place], kept.value[place], {}};
    for (int j = 0; j < subset.size; j++) subset.members.push_back(kept.members[place][j] - 1);
    return subset;
}

Names WithTraits(Names header, const FullNames& names) {
    header.insert(header.end(), names.traits.begin(), names.traits.end());
    return header;
}

/// A column for each trait; null: no subset.
void PutTraits(const Subset* subset, CsvWriter* table) {
    for (int k = 0; k < nch; k++) {
        if (subset == nullptr)
            table->Text("");
        else
            table->Integer(std::count(subset->members.begin(), subset->members.end(), k));
    }
}

/// The sizes of the values, "all" at the end.
Names Sizes() {
    Names sizes;
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++)
        sizes.push_back(std::to_string(size));
    sizes.emplace_back("all");
    return sizes;
}

const Subset* FindSubset(const RankingResults& results, const std::string& size) {
    if (size == "all") return results.ranked.empty() ? nullptr : &results.ranked[0];
    const auto found =
        std::find_if(results.best.begin(), results.best.end(),
                     [&](const Subset& subset) { return std::to_string(subset.size) == size; });
    return found == results.best.end() ? nullptr : &*found;
}

}  // namespace

RankingResults ResultsOf(const SubsetSearch& search, const SearchOutcome& outcome) {
    RankingResults results = {search.keeping, {}, {}, BestValues(search, outcome)};
    const KeptSubsets& kept = Kept(outcome.ranked);
    for (int place = outcome.ranked.places - 1; place > 0; place--)
        if (kept.size[place] > 0) results.ranked.push_back(KeptAt(kept, place));
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++)
        if (outcome.best.size[size - 1] > 0) results.best.push_back(KeptAt(outcome.best, size - 1));
    return results;
}

void WriteSubsets(const RankingResults& results, const FullNames& names, ResultFolder* folder) {
    CsvWriter ranked(folder->Table("ranked.csv"), WithTraits({"place", "size", "value"}, names));
    int place = 0;
    for (const Subset& subset : results.ranked) {
        ranked.Integer(++place);
        ranked.Integer(subset.size);
        ranked.RealAsIs(subset.value);
        PutTraits(&subset, &ranked);
        ranked.EndRow();
    }
    ranked.Finish();
    CsvWriter best(folder->Table("best.csv"), WithTraits({"size", "subsets", "value"}, names));
    for (const Subset& subset : results.best) {
        best.Integer(subset.size);
        best.Integer(CountSubsets64(CountTraitsInUse(), subset.size));
        best.RealAsIs(subset.value);
        PutTraits(&subset, &best);
        best.EndRow();
    }
    best.Finish();
}

std::vector<double> TestRanking(const RankingResults& results, int permutations,
                                const FullNames& names, ResultFolder* folder,
                                RankCheckpoint* checkpoint) {
    const Names sizes = Sizes();
    std::optional<NullValues> null;
    if (folder->IsWanted()) {
        null.emplace(folder->Table("null.csv"), sizes);
        null->Add(results.values);
    }
    TestRun run{.permutations = permutations, .each = [&null](std::span<const double> values) {
                    if (null) null->Add(values);
                }};
    checkpoint->Follow(&run);
    std::vector<double> probabilities = TestSearch(results.values, results.keeping, run);
    if (!null) return probabilities;
    null->Finish();
    Names header = {"size"};
    header.insert(header.end(), kNullColumns.begin(), kNullColumns.end());
    CsvWriter table(folder->Table("test.csv"), WithTraits(header, names));
    for (std::size_t k = 0; k < sizes.size(); k++) {
        table.Text(sizes[k]);
        PutNullCells(results.values[k], probabilities[k], permutations + 1,
                     null->moments(static_cast<int>(k)), &table);
        PutTraits(FindSubset(results, sizes[k]), &table);
        table.EndRow();
    }
    table.Finish();
    return probabilities;
}
