#pragma once
/// \file
/// Group memberships of OTUs, one number per OTU, from a file or from the keyboard. Any number is a
/// group; it is truncated to an integer.

/// Asks for the types of n OTUs, again when the named file does not open. False when the file ended
/// early: the OTUs without a number keep their labels.
bool AskTypesOfOTUs(int n, int* types);

/// Asks for the nesting groups of n OTUs. OTUs without a number keep theirs. When the named file
/// does not open, and after a file of types that ended early, the dialogue rests for ever.
void AskNestingGroupsOfOTUs(int n, int* groups, bool typesComplete);
