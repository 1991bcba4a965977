#include "TSLCLI/rank_checkpoint.h"

#include <optional>
#include <type_traits>
#include <utility>

#include "TSLCLI/failure.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"

namespace {

void PutKept(const KeptSubsets& kept, int places, CheckpointNumbers* numbers) {
    for (int place = 0; place < places; place++) {
        numbers->Put(kept.value[place]);
        numbers->Put(std::int64_t{kept.size[place]});
        numbers->Put(std::int64_t{kept.groups[place]});
        for (int j = 0; j < kept.size[place]; j++)
            numbers->Put(std::int64_t{kept.members[place][j]});
    }
}

void TakeKept(int places, CheckpointNumbers* numbers, KeptSubsets* kept) {
    for (int place = 0; place < places; place++) {
        kept->value[place] = numbers->TakeReal();
        kept->size[place] = static_cast<int>(numbers->TakeWhole());
        kept->groups[place] = static_cast<int>(numbers->TakeWhole());
        if (kept->size[place] < 0 || kept->size[place] > nch)
            FailRun("the checkpoint is damaged: remove it, and the run begins anew");
        for (int j = 0; j < kept->size[place]; j++)
            kept->members[place][j] = static_cast<int>(numbers->TakeWhole());
    }
}

CheckpointNumbers NumbersOf(const SearchPlace& place, const SearchOutcome& outcome) {
    CheckpointNumbers numbers;
    numbers.Put(std::int64_t{place.size});
    numbers.Put(place.number);
    PutKept(outcome.best, nch, &numbers);
    for (const RankedList* list : {&outcome.ranked, &outcome.whileRating})
        PutKept(Kept(*list), list->places, &numbers);
    return numbers;
}

/// The rest of the numbers.
CheckpointNumbers RestOf(CheckpointNumbers* numbers, std::int64_t count) {
    CheckpointNumbers rest;
    for (std::int64_t k = 0; k < count; k++) rest.Put(numbers->TakeWhole());
    return rest;
}

void PutPart(const CheckpointNumbers& part, CheckpointNumbers* numbers) {
    numbers->Put(static_cast<std::int64_t>(part.words().size()));
    numbers->Append(part);
}

}  // namespace

RankCheckpoint::RankCheckpoint(const std::string& path, std::uint64_t digest, bool writesSubsets)
    : file_(path, digest), writesSubsets_(writesSubsets) {
    std::optional<CheckpointNumbers> numbers = file_.Read();
    goesOn_ = numbers.has_value();
    if (!goesOn_ || numbers->words().empty()) return;
    Tell("Going on from " + path);
    rseed = static_cast<unsigned long>(numbers->TakeWhole());
    tests_ = numbers->TakeWhole() != 0;
    observed_ = RestOf(&*numbers, numbers->TakeWhole());
    if (tests_) {
        state_.done = static_cast<int>(numbers->TakeWhole());
        TakeAll(&*numbers, &state_.frequency);
        TakeAll(&*numbers, &state_.order);
        TakeAll(&*numbers, &state_.generator);
        rows_.resize(static_cast<std::size_t>(numbers->TakeWhole()));
        for (auto& row : rows_) TakeAll(&*numbers, &row);
    }
    search_ = RestOf(&*numbers, numbers->TakeWhole());
}

SearchPlace RankCheckpoint::TakeSearch(CheckpointNumbers* numbers, SearchOutcome* outcome) {
    if (numbers->words().empty()) return {nMinTraitsChRank, 0};
    SearchPlace place = {};
    place.size = static_cast<int>(numbers->TakeWhole());
    place.number = numbers->TakeWhole();
    TakeKept(nch, numbers, &outcome->best);
    for (RankedList* list : {&outcome->ranked, &outcome->whileRating})
        TakeKept(list->places, numbers, &list->layers[list->current]);
    return place;
}

void RankCheckpoint::SaveIfDue(const SearchPlace& place, const SearchOutcome& outcome) {
    if (!file_.IsDue()) return;
    if (tests_ || !writesSubsets_) {
        CheckpointNumbers numbers;
        numbers.Put(static_cast<std::int64_t>(rseed));
        numbers.Put(std::int64_t{tests_});
        PutPart(observed_, &numbers);
        if (tests_) {
            numbers.Put(std::int64_t{state_.done});
            PutAll(state_.frequency, &numbers);
            PutAll(state_.order, &numbers);
            PutAll(state_.generator, &numbers);
            numbers.Put(static_cast<std::int64_t>(rows_.size()));
            for (const auto& row : rows_) PutAll(row, &numbers);
        }
        PutPart(NumbersOf(place, outcome), &numbers);
        file_.Write(numbers);
    }
    file_.EndIfAsked();
}

void RankCheckpoint::Follow(SearchRun* run) {
    if (search_.words().empty()) file_.Begin();
    run->goOn = [this](SearchOutcome* outcome) {
        CheckpointNumbers numbers =
            tests_ ? observed_ : std::exchange(search_, CheckpointNumbers());
        return TakeSearch(&numbers, outcome);
    };
    run->between = [this](const SearchPlace& place, const SearchOutcome& outcome) {
        // The searches of a test go on behind this one.
        if (!tests_) SaveIfDue(place, outcome);
    };
    run->receive = [this, receive = run->receive](const SubsetSearch& search,
                                                  const SearchOutcome& outcome) {
        if (!writesSubsets_) observed_ = NumbersOf({nMaxTraitsChRank + 1, 0}, outcome);
        receive(search, outcome);
    };
}

void RankCheckpoint::Follow(TestRun* run) {
    if (tests_) run->from = state_;
    for (const auto& row : rows_) run->each(row);
    run->each = [this, each = run->each](std::span<const double> values) {
        rows_.emplace_back(values.begin(), values.end());
        each(values);
    };
    run->begins = [this](const TestState& state) {
        tests_ = true;
        state_ = state;
    };
    run->search.goOn = [this](SearchOutcome* outcome) {
        CheckpointNumbers numbers = std::exchange(search_, CheckpointNumbers());
        return TakeSearch(&numbers, outcome);
    };
    run->search.between = [this](const SearchPlace& place, const SearchOutcome& outcome) {
        SaveIfDue(place, outcome);
    };
}
