#include "TSLCLI/simulation_checkpoint.h"

#include "TSLCLI/failure.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/simulation/answers.h"
#include "TSLIF/simulation/evaluation.h"

SimulationCheckpoint::SimulationCheckpoint(const std::string& path, std::uint64_t digest,
                                           bool evaluates, bool reportsDataSets)
    : file_(path, digest, evaluates), evaluates_(evaluates), reportsDataSets_(reportsDataSets) {
    std::optional<CheckpointNumbers> numbers = file_.Read();
    goesOn_ = numbers.has_value();
    if (!goesOn_ || numbers->words().empty()) return;
    Tell("Going on from " + path);
    rseed = static_cast<unsigned long>(numbers->TakeWhole());
    place_.emplace();
    place_->dataSets = static_cast<int>(numbers->TakeWhole());
    place_->chiSquareCalls = numbers->TakeWhole();
    TakeAll(&*numbers, &place_->rejections);
    TakeAll(&*numbers, &place_->generator);
    rows_.resize(static_cast<std::size_t>(place_->dataSets));
    for (auto& row : rows_) TakeAll(&*numbers, &row);
}

void SimulationCheckpoint::SaveIfDue(const SimulationPlace& place) {
    if (!file_.IsDue()) return;
    if (!reportsDataSets_) {
        CheckpointNumbers numbers;
        numbers.Put(static_cast<std::int64_t>(rseed));
        numbers.Put(std::int64_t{place.dataSets});
        numbers.Put(std::int64_t{place.chiSquareCalls});
        PutAll(place.rejections, &numbers);
        PutAll(place.generator, &numbers);
        for (const auto& row : rows_) PutAll(row, &numbers);
        file_.Write(numbers);
    }
    file_.EndIfAsked();
}

void SimulationCheckpoint::Begin() {
    if (evaluates_ && !place_) file_.Begin();
}

void SimulationCheckpoint::Follow(const SimulationAnswers& answers, SimulationRun* run,
                                  const EvaluatedReceiver& receive) {
    run->from = place_ ? &*place_ : nullptr;
    int dataSet = 0;
    for (const auto& row : rows_) receive(DataSetOfRun(answers, dataSet++), row);
    run->evaluated = [this, receive](int number, const Evaluation& evaluation) {
        rows_.push_back(EvaluatedValues(evaluation));
        receive(number, rows_.back());
    };
    run->between = [this](const SimulationPlace& place) { SaveIfDue(place); };
}
