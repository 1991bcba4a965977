#pragma once
/// \file
/// The memory that is left.

/// Bytes that the system can still give without paging; 0 where it does not tell.
double AvailableMemory();

/// Answers in the place of the system, for tests; null means the real thing.
extern double (*availableMemoryHook)();
