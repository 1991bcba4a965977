#pragma once
/// \file
/// Deriving a data set from another session's.

/// Selects, pools or differences the data of the file named by whichFormda. False when nothing was
/// made.
bool PickSomeFormda();
