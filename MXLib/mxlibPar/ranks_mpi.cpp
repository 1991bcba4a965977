// The ranks of MPI, linked in front of the library, whose one rank then stays out.

#include <mpi.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <map>

#include "mxlibDim/platform.h"
#include "mxlibPar/ranks.h"

namespace {

enum Tag : int { kAssigned = 1, kResult = 2 };

/// What stands before the bytes of a result.
struct ResultHead {
    WorkStretch stretch;
    double seconds;
};

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool isAlone = false;  // within RunAlone

struct Alone {
    Alone() { isAlone = true; }
    ~Alone() { isAlone = false; }
    Alone(const Alone&) = delete;
    Alone& operator=(const Alone&) = delete;
};

std::string Answer(const WorkStretch& stretch,
                   const std::function<std::string(const WorkStretch&)>& work) {
    const double start = Now();
    std::string bytes;
    RunAlone([&] { bytes = work(stretch); });
    const ResultHead head{stretch, Now() - start};
    std::string message(sizeof head, '\0');
    std::memcpy(message.data(), &head, sizeof head);
    return message + bytes;
}

/// What rank 0 keeps of the work.
class Handing {
  public:
    Handing(std::int64_t items,
            const std::function<void(const WorkStretch&, const std::string&)>& take)
        : items_(items), take_(take) {}

    bool IsDone() const { return taken_ == items_; }

    /// The next stretch; of no items when all are given.
    WorkStretch Next() {
        const std::int64_t left = items_ - given_;
        const std::int64_t share = left / (2 * static_cast<std::int64_t>(Ranks())) + 1;
        const WorkStretch stretch{given_, std::min({left, share, length_})};
        given_ += stretch.count;
        return stretch;
    }

    /// Takes a result, and those behind it that have waited for it.
    void Take(const std::string& message) {
        ResultHead head;
        std::memcpy(&head, message.data(), sizeof head);
        constexpr double kSeconds = 0.1;  // of a stretch: long beside a message
        constexpr double kMostItems = 1e15;
        const double items =
            kSeconds * static_cast<double>(head.stretch.count) / std::max(head.seconds, 1e-9);
        length_ = std::clamp(static_cast<std::int64_t>(std::min(items, kMostItems)), length_ / 2,
                             length_ * 2);
        length_ = std::max<std::int64_t>(length_, 1);
        waiting_[head.stretch.first] = {head.stretch, message.substr(sizeof head)};
        for (auto next = waiting_.begin(); next != waiting_.end() && next->first == taken_;
             next = waiting_.erase(next)) {
            take_(next->second.stretch, next->second.bytes);
            taken_ += next->second.stretch.count;
        }
    }

  private:
    struct Waiting {
        WorkStretch stretch;
        std::string bytes;
    };
    std::int64_t items_;
    const std::function<void(const WorkStretch&, const std::string&)>& take_;
    std::int64_t given_ = 0;
    std::int64_t taken_ = 0;
    std::int64_t length_ = 1;
    std::map<std::int64_t, Waiting> waiting_;
};

void Assign(int rank, const WorkStretch& stretch) {
    MPI_Send(&stretch, sizeof stretch, MPI_BYTE, rank, kAssigned, MPI_COMM_WORLD);
}

/// Takes a result that has come, if there is one or `waits`, and gives its rank new work.
bool ServeOne(bool waits, Handing* handing) {
    MPI_Status status;
    int isThere = 1;
    if (waits)
        MPI_Probe(MPI_ANY_SOURCE, kResult, MPI_COMM_WORLD, &status);
    else
        MPI_Iprobe(MPI_ANY_SOURCE, kResult, MPI_COMM_WORLD, &isThere, &status);
    if (isThere == 0) return false;
    int size = 0;
    MPI_Get_count(&status, MPI_BYTE, &size);
    std::string message(static_cast<size_t>(size), '\0');
    MPI_Recv(message.data(), size, MPI_BYTE, status.MPI_SOURCE, kResult, MPI_COMM_WORLD,
             MPI_STATUS_IGNORE);
    Assign(status.MPI_SOURCE, handing->Next());
    handing->Take(message);
    return true;
}

/// Each of the others has a stretch at hand and one in reserve.
void HandAndWork(Handing* handing, const std::function<std::string(const WorkStretch&)>& work) {
    for (int round = 0; round < 2; round++)
        for (int rank = 1; rank < Ranks(); rank++) Assign(rank, handing->Next());
    while (!handing->IsDone()) {
        while (ServeOne(false, handing)) {
        }
        const WorkStretch own = handing->Next();
        if (own.count > 0)
            handing->Take(Answer(own, work));
        else if (!handing->IsDone())
            ServeOne(true, handing);
    }
}

/// Ends when both stretches that it was given last are empty: then it owes no result.
void Work(const std::function<std::string(const WorkStretch&)>& work) {
    for (int empty = 0; empty < 2;) {
        WorkStretch stretch;
        MPI_Recv(&stretch, sizeof stretch, MPI_BYTE, 0, kAssigned, MPI_COMM_WORLD,
                 MPI_STATUS_IGNORE);
        if (stretch.count == 0) {
            empty++;
            continue;
        }
        const std::string message = Answer(stretch, work);
        if (message.size() > static_cast<size_t>(INT_MAX)) EndRanks(1);
        MPI_Send(message.data(), static_cast<int>(message.size()), MPI_BYTE, 0, kResult,
                 MPI_COMM_WORLD);
    }
}

}  // namespace

int Rank() {
    int rank = 0, isRunning = 0;
    MPI_Initialized(&isRunning);
    if (isRunning != 0) MPI_Comm_rank(MPI_COMM_WORLD, &rank);
    return rank;
}

int Ranks() {
    if (isAlone) return 1;
    int ranks = 1, isRunning = 0;
    MPI_Initialized(&isRunning);
    if (isRunning != 0) MPI_Comm_size(MPI_COMM_WORLD, &ranks);
    return ranks;
}

void JoinRanks(int* argc, char*** argv) {
    int provided = 0;
    MPI_Init_thread(argc, argv, MPI_THREAD_FUNNELED, &provided);
    std::atexit([] { MPI_Finalize(); });
}

void EndRanks(int status) {
    if (Ranks() > 1) MPI_Abort(MPI_COMM_WORLD, status);
    std::exit(status);
}

std::int64_t ShareNumber(std::int64_t number) {
    if (isAlone) return number;
    MPI_Bcast(&number, sizeof number, MPI_BYTE, 0, MPI_COMM_WORLD);
    return number;
}

std::string ShareBytes(const std::string& bytes) {
    if (isAlone) return bytes;
    std::string shared = bytes;
    shared.resize(static_cast<size_t>(ShareNumber(static_cast<std::int64_t>(bytes.size()))));
    constexpr size_t kMost = INT_MAX / 2;
    for (size_t from = 0; from < shared.size(); from += kMost)
        MPI_Bcast(shared.data() + from, static_cast<int>(std::min(kMost, shared.size() - from)),
                  MPI_BYTE, 0, MPI_COMM_WORLD);
    return shared;
}

void RunAlone(const std::function<void()>& body) {
    const Alone alone;
    body();
}

void HandOut(std::int64_t items, const std::function<std::string(const WorkStretch&)>& work,
             const std::function<void(const WorkStretch&, const std::string&)>& take) {
    if (isAlone) {
        const WorkStretch all{0, items};
        if (items > 0) take(all, work(all));
        return;
    }
    if (!IsFirstRank()) return Work(work);
    Handing handing(items, take);
    HandAndWork(&handing, work);
}

FILE* ShareFile(FILE* opened) {
    if (isAlone) return opened;
    const auto isOpen = static_cast<int>(ShareNumber(opened != nullptr ? 1 : 0));
    const auto reason = static_cast<int>(ShareNumber(errno));
    if (isOpen == 0) {
        errno = reason;
        return nullptr;
    }
    std::string content;
    char block[1 << 16];
    if (opened != nullptr)
        for (size_t size = 0; (size = std::fread(block, 1, sizeof block, opened)) > 0;)
            content.append(block, size);
    const auto isRead = ShareNumber(opened != nullptr && std::ferror(opened) != 0 ? 0 : 1);
    content = ShareBytes(content);
    FILE* const stream = opened != nullptr ? opened : OpenTemporary();
    if (stream == nullptr) return nullptr;
    if (opened == nullptr) std::fwrite(content.data(), 1, content.size(), stream);
    // A read that fails fails again where it did: on rank 0, which ends all.
    if (isRead != 0) std::rewind(stream);
    return stream;
}
