#include "TSLCLI/checkpoint.h"

#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/session.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/replacement.h"
#include "mxlibPar/ranks.h"

namespace {

constexpr const char* kFirstLine = "TESSEL checkpoint 1\n";
constexpr const char* kLastLine = "end\n";

volatile std::sig_atomic_t signalThatCame = 0;

/// The next one of the same kind ends the process as ever.
void TakeSignal(int number) {
    signalThatCame = number;
    std::signal(number, SIG_DFL);
}

/// Tests cannot wait for a minute.
double SecondsBetween() {
    const char* const seconds = std::getenv("TESSEL_CHECKPOINT_SECONDS");
    return seconds != nullptr ? std::atof(seconds) : 60.0;
}

[[noreturn]] void FailDamaged(const std::string& path) {
    FailRun(path + ": this is no whole checkpoint: remove it, and the run begins anew");
}

}  // namespace

void CheckpointNumbers::Put(double value) {
    std::memcpy(&words_.emplace_back(), &value, sizeof value);
}

void CheckpointNumbers::Append(const CheckpointNumbers& other) {
    words_.insert(words_.end(), other.words_.begin(), other.words_.end());
}

std::int64_t CheckpointNumbers::TakeWhole() {
    if (next_ == words_.size()) FailDamaged("checkpoint");
    return static_cast<std::int64_t>(words_[next_++]);
}

double CheckpointNumbers::TakeReal() {
    const std::int64_t word = TakeWhole();
    double value = 0.0;
    std::memcpy(&value, &word, sizeof value);
    return value;
}

void Digest::Add(std::string_view bytes) {
    const auto mix = [this](unsigned char byte) { value_ = (value_ ^ byte) * 0x100000001b3; };
    for (const char c : bytes) mix(static_cast<unsigned char>(c));
    for (std::size_t rest = bytes.size(), k = 0; k < sizeof rest; k++, rest >>= 8)
        mix(static_cast<unsigned char>(rest & 0xff));
}

Checkpoint::Checkpoint(std::string path, std::uint64_t digest, bool takesSignals)
    : path_(std::move(path)), digest_(digest), takesSignals_(takesSignals) {
    signalThatCame = 0;
    if (!takesSignals_) return;
    for (const int number : {SIGINT, SIGTERM})
        if (std::signal(number, TakeSignal) == SIG_IGN) std::signal(number, SIG_IGN);
}

Checkpoint::~Checkpoint() {
    if (!isKept_) Remove();
    if (!takesSignals_) return;
    for (const int number : {SIGINT, SIGTERM})
        if (std::signal(number, SIG_DFL) == SIG_IGN) std::signal(number, SIG_IGN);
}

std::optional<CheckpointNumbers> Checkpoint::Read() const {
    if (!IsThere(path_)) return std::nullopt;
    const std::string text = ReadWhole(path_);
    const char* at = text.c_str();
    if (!text.starts_with(kFirstLine)) FailDamaged(path_);
    at += std::strlen(kFirstLine);
    std::vector<std::uint64_t> words;
    char* end = nullptr;
    while (std::strcmp(at, kLastLine) != 0) {
        words.push_back(std::strtoull(at, &end, 16));
        if (end == at || *end != '\n') FailDamaged(path_);
        at = end + 1;
    }
    if (words.empty()) FailDamaged(path_);
    if (words[0] != digest_ && words.size() == 1) return std::nullopt;
    if (words[0] != digest_)
        FailRun(path_ +
                ": an interrupted run with other data or settings left this checkpoint: repeat "
                "that run to finish it, give another file by --checkpoint, or remove it");
    words.erase(words.begin());
    return CheckpointNumbers(std::move(words));
}

void Checkpoint::Begin() {
    if (TryToWrite(CheckpointNumbers())) isKept_ = false;
}

bool Checkpoint::IsDue() const {
    const std::chrono::duration<double> since = std::chrono::steady_clock::now() - written_;
    return signalThatCame != 0 || since.count() >= SecondsBetween();
}

void Checkpoint::Write(const CheckpointNumbers& numbers) {
    if (!TryToWrite(numbers)) FailRun(path_ + ": the checkpoint could not be written");
    isKept_ = true;
    written_ = std::chrono::steady_clock::now();
}

bool Checkpoint::TryToWrite(const CheckpointNumbers& numbers) {
    FileReplacement file(path_.c_str(), nullptr);
    if (file == nullptr) return false;
    std::fputs(kFirstLine, file);
    std::fprintf(file, "%" PRIx64 "\n", digest_);
    for (const std::uint64_t word : numbers.words()) std::fprintf(file, "%" PRIx64 "\n", word);
    std::fputs(kLastLine, file);
    return file.Commit();
}

void Checkpoint::EndIfAsked() {
    if (signalThatCame == 0) return;
    const auto status = signalThatCame == SIGINT ? kInterrupted : kTerminated;
    const bool goesOn = std::exchange(isKept_, true);
    throw CommandFailure(status, goesOn ? "interrupted: the same command goes on from " + path_
                                        : "interrupted: the same command begins anew");
}

void Checkpoint::Remove() {
    std::error_code error;
    if (IsFirstRank()) std::filesystem::remove(PathOf(path_), error);
    isKept_ = true;
}
