#include "TSLCHORD/search_test.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "TSLCHORD/criteria.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/numbers.h"

namespace {

/// Searches seed the generator anew: for the length of a scope it is laid aside.
class GeneratorAside {
  public:
    GeneratorAside() : generator_(std::exchange(r, nullptr)) {}
    ~GeneratorAside() {
        gsl_rng_free(r);
        r = generator_;
    }
    GeneratorAside(const GeneratorAside&) = delete;
    GeneratorAside& operator=(const GeneratorAside&) = delete;

  private:
    gsl_rng* generator_;
};

/// The traits and types of the OTUs in other orders. The scope's end brings back the true one; a
/// search changes the table of traits.
class PermutedTraits {
  public:
    PermutedTraits() : types_(partition_OTUs, partition_OTUs + tcst) {
        for (int i = 0; i < tcst; i++) std::copy_n(csm_Float[i], nch, traits_[i]);
        for (int i = 0; i < tcst; i++) list_[i] = i + 1;
    }
    ~PermutedTraits() {
        for (int i = 0; i < tcst; i++) list_[i] = i + 1;
        Take();
    }
    PermutedTraits(const PermutedTraits&) = delete;
    PermutedTraits& operator=(const PermutedTraits&) = delete;

    std::vector<int> order() const { return {list_.get(), list_.get() + tcst}; }
    void SetOrder(const std::vector<int>& order) {
        std::copy(order.begin(), order.end(), list_.get());
    }

    /// Each order comes from the one before, as in the test of the analysis.
    void TakeNext() {
        if (isNested_)
            RndListNested(nesting_, list_);
        else
            RndListSpecified(tcst, list_);
        Take();
    }

  private:
    void Take() {
        for (int i = 0; i < tcst; i++) {
            std::copy_n(traits_[list_[i] - 1], nch, csm_Float[i]);
            partition_OTUs[i] = types_[list_[i] - 1];
        }
    }

    ScopedMatrix<float> traits_{tcst, nch};
    std::vector<int> types_;
    ScopedVector<int> list_{tcst};
    bool isNested_ = optRestrictPermutNullModel == 1;
    NestedGroups nesting_ = MakeNestedGroups(isNested_ ? tcst : 0, nestingMembershipOTUs);
};

/// The letters y for files and lines that only the observed search writes.
class WithoutFiles {
  public:
    WithoutFiles()
        : structures_(std::exchange(saveStruct, 'n')),
          lines_(std::exchange(printRankIntermedResults, 'n')) {}
    ~WithoutFiles() {
        saveStruct = structures_;
        printRankIntermedResults = lines_;
    }
    WithoutFiles(const WithoutFiles&) = delete;
    WithoutFiles& operator=(const WithoutFiles&) = delete;

  private:
    char structures_, lines_;
};

std::vector<double> SearchPermuted(SearchRun run) {
    const GeneratorAside aside;
    std::vector<double> best;
    run.writesResults = false;
    run.receive = [&best](const SubsetSearch& search, const SearchOutcome& outcome) {
        best = BestValues(search, outcome);
    };
    CriterionOf(opt_struct).search(run);
    return best;
}

}  // namespace

std::vector<double> BestValues(const SubsetSearch& search, const SearchOutcome& outcome) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> best;
    double ofAll = kNaN;
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++) {
        const bool isKept = outcome.best.size[size - 1] > 0;
        best.push_back(isKept ? outcome.best.value[size - 1] : kNaN);
        if (isKept && !(IsBetter(search.keeping, ofAll, best.back()))) ofAll = best.back();
    }
    best.push_back(ofAll);
    return best;
}

std::vector<double> TestSearch(std::span<const double> observed, Keeping keeping,
                               const TestRun& run) {
    // Sums in other orders: some searches work in single precision.
    constexpr int kUnitsInLastPlace = 32;
    InitRndNumberGenerator(rseed);
    const WithoutFiles without;
    PermutedTraits traits;
    std::vector<double> frequency(observed.size(), 1.0);
    if (run.from) {
        frequency = run.from->frequency;
        traits.SetOrder(run.from->order);
        SetGeneratorState(run.from->generator);
    }
    for (int i = run.from ? run.from->done : 0; i < run.permutations; i++) {
        if (run.begins) run.begins({i, frequency, traits.order(), GeneratorState()});
        traits.TakeNext();
        const std::vector<double> best = SearchPermuted(run.search);
        if (run.each) run.each(best);
        for (std::size_t k = 0; k < observed.size(); k++)
            if (IsLargerThanOrEqual(best[k], observed[k], kUnitsInLastPlace,
                                    keeping == Keeping::byMagnitude))
                frequency[k] += 1.0;
    }
    for (std::size_t k = 0; k < observed.size(); k++)
        frequency[k] = observed[k] == observed[k] ? frequency[k] / (run.permutations + 1.0)
                                                  : std::numeric_limits<double>::quiet_NaN();
    return frequency;
}
