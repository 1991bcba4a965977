#pragma once
/// \file
/// Steps that run side by side on the cores of the machine (OpenMP; without it one after another).
/// A step writes into its own place of the results or into the record of its worker, nowhere else,
/// so that nothing depends on the number of workers or on who was first.

#include <functional>

/// Threads that the program uses: those of the last SetThreads, otherwise what OpenMP gives the
/// process (OMP_NUM_THREADS, affinity); at least 1.
int Threads();

/// 0: what OpenMP gives.
void SetThreads(int threads);

/// Workers for `steps` steps at a time: no more than Threads(), nor than steps.
/// 1 within a step that runs side by side with others.
int WorkersFor(int steps);

/// step(k, worker) for k from 0 to steps - 1, in any order, at most `workers` at a time; no two of
/// one worker (0 to workers - 1) at a time. With one worker they run in their order, on the thread
/// that calls. When steps throw, the error of the first of them (the smallest k) is
/// thrown on when all that are under way are done.
void RunSideBySide(int steps, int workers, const std::function<void(int k, int worker)>& step);
