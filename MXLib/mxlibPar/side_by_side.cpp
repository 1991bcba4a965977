#include "mxlibPar/side_by_side.h"

#include <algorithm>
#include <exception>
#include <mutex>

#ifdef _OPENMP
#include <omp.h>
#endif
#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>

/// What OpenMP hands to its threads is read in RunSideBySide itself, before it can be told that it
/// is ordered.
extern "C" const char* __tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "race_top:RunSideBySide";
}
#endif

namespace {

int threadsAsked = 0;

#ifdef _OPENMP
/// The runtime of OpenMP orders what stands before, within and behind its regions in ways that the
/// thread sanitizer does not see: it is told.
void TellOrderedBefore([[maybe_unused]] void* gate) {
#ifdef __SANITIZE_THREAD__
    __tsan_release(gate);
#endif
}

void TellOrderedBehind([[maybe_unused]] void* gate) {
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(gate);
#endif
}

/// The error of the step with the smallest number.
struct FirstError {
    std::mutex mutex;
    int step = -1;
    std::exception_ptr error;

    void Take(int k) {
        const std::lock_guard<std::mutex> lock(mutex);
        if (step >= 0 && step < k) return;
        step = k;
        error = std::current_exception();
    }
};
#endif

}  // namespace

int Threads() {
#ifdef _OPENMP
    return std::max(threadsAsked > 0 ? threadsAsked : omp_get_max_threads(), 1);
#else
    return 1;
#endif
}

void SetThreads(int threads) {
    threadsAsked = threads;
}

int WorkersFor(int steps) {
#ifdef _OPENMP
    if (omp_in_parallel() != 0) return 1;
#endif
    return std::clamp(steps, 1, Threads());
}

void RunSideBySide(int steps, [[maybe_unused]] int workers,
                   const std::function<void(int k, int worker)>& step) {
#ifdef _OPENMP
    if (workers > 1) {
        FirstError first;
        char begun = 0;
        char ended = 0;
        TellOrderedBefore(&begun);
#pragma omp parallel num_threads(workers)
        {
            TellOrderedBehind(&begun);
            const int worker = omp_get_thread_num();
#pragma omp for schedule(dynamic, 1)
            for (int k = 0; k < steps; k++) {
                try {
                    step(k, worker);
                } catch (...) {
                    first.Take(k);
                }
            }
            TellOrderedBefore(&ended);
        }
        TellOrderedBehind(&ended);
        if (first.error) std::rethrow_exception(first.error);
        return;
    }
#endif
    for (int k = 0; k < steps; k++) step(k, 0);
}
