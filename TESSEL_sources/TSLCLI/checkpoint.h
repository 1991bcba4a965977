#pragma once
/// \file
/// Checkpoints: what an interrupted run needs to go on, in a file of numbers that is the same on
/// every machine.

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// Numbers one after the other: whole ones and doubles, bit by bit.
class CheckpointNumbers {
  public:
    void Put(std::int64_t value) { words_.push_back(static_cast<std::uint64_t>(value)); }
    void Put(double value);
    void Append(const CheckpointNumbers& other);

    /// The next one; fails behind the last.
    std::int64_t TakeWhole();
    double TakeReal();

    const std::vector<std::uint64_t>& words() const { return words_; }
    explicit CheckpointNumbers(std::vector<std::uint64_t> words = {}) : words_(std::move(words)) {}

  private:
    std::vector<std::uint64_t> words_;
    std::size_t next_ = 0;
};

template <class Number>
void PutAll(const std::vector<Number>& values, CheckpointNumbers* numbers) {
    numbers->Put(static_cast<std::int64_t>(values.size()));
    for (const Number value : values) {
        if constexpr (std::is_same_v<Number, double>)
            numbers->Put(value);
        else
            numbers->Put(static_cast<std::int64_t>(value));
    }
}

template <class Number>
void TakeAll(CheckpointNumbers* numbers, std::vector<Number>* values) {
    const std::int64_t size = numbers->TakeWhole();
    values->clear();
    for (std::int64_t k = 0; k < size; k++) {
        if constexpr (std::is_same_v<Number, double>)
            values->push_back(numbers->TakeReal());
        else
            values->push_back(static_cast<Number>(numbers->TakeWhole()));
    }
}

/// What makes two runs the same: the words that are put in, in their order.
class Digest {
  public:
    void Add(std::string_view bytes);
    template <class Number>
    void Add(const Number* numbers, int count) {
        for (int k = 0; k < count; k++) Add(std::to_string(numbers[k]));
    }
    std::uint64_t value() const { return value_; }

  private:
    std::uint64_t value_ = 0xcbf29ce484222325;  // Fowler, Noll and Vo
};

/// The checkpoint file of a run, and the signals that end it: from here on SIGINT and SIGTERM wait
/// for the next EndIfAsked, once.
class Checkpoint {
  public:
    /// `digest` of the data and the settings. Signals are left alone unless `takesSignals`.
    Checkpoint(std::string path, std::uint64_t digest, bool takesSignals = true);
    ~Checkpoint();
    Checkpoint(const Checkpoint&) = delete;
    Checkpoint& operator=(const Checkpoint&) = delete;

    /// What an interrupted run has left, empty if it had only begun; nothing where there is no such
    /// file. Fails for the file of other data or settings, and for what is no checkpoint.
    std::optional<CheckpointNumbers> Read() const;

    /// Notes that the run has begun, so that the files of one that is killed are known as its own.
    void Begin();
    /// Whether it is time to write: a minute after the last time, or when a signal came.
    bool IsDue() const;
    void Write(const CheckpointNumbers& numbers);
    /// Ends the command by 130 or 143 when a signal came, and says how to go on.
    void EndIfAsked();
    /// The run is done.
    void Remove();

    const std::string& path() const { return path_; }

  private:
    bool TryToWrite(const CheckpointNumbers& numbers);

    std::string path_;
    std::uint64_t digest_;
    bool takesSignals_;
    bool isKept_ = true;  ///< false: nothing in the file is worth keeping
    std::chrono::steady_clock::time_point written_ = std::chrono::steady_clock::now();
};
