#pragma once
/// \file
/// Deriving a data set from another session's.

/// Asks what is to be kept of the data set of the file that whichFormda names, of the session
/// tempSession, and whether its communities are pooled or turned into changes, and writes the
/// result as the data file of the current session, to which whichFormda then refers. False, with
/// nothing written, when no OTU or no community would be left.
bool PickSomeFormda();
