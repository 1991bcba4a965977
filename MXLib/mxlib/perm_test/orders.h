#pragma once
/// \file
/// A few orders of the OTUs, drawn ahead and taken by a worker at a time: what looks up tables of
/// OTUs by OTUs too large for a processor's cache reads each row once for all of them.

#include "mxlibDim/scoped.h"

struct Orders {
    int n;
    int count;
    const int* const* lists;    ///< by order: OTU of each place, from 1
    ScopedMatrix<int> otuOf;    ///< the same from 0
    ScopedMatrix<int> placeOf;  ///< by order: place of each OTU
};

/// Whether a table of n x n is larger than what a core has for itself.
bool IsLargeTable(int n);

/// How many orders of n OTUs are taken at a time.
int OrdersTogether(int n);

/// Room for them.
Orders MakeOrders(int n);

/// Takes the orders of `lists`, no more than there is room for.
void TakeOrders(int count, const int* const* lists, Orders* orders);
