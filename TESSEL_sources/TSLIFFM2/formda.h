#pragma once
/// \file
/// The formatted data file of a session: the data set's persistent form.

/// Releases the data set in memory (FreeGlobals2), reads the file named by whichFormda into the
/// globals of TSLGLOB/dataset.h and clears dirtyOrig. A phylogeny in memory is replaced only by one
/// in the file. `mode` is always 1. Raises kFailedOpening, or kEndOfFile for a file that ends
/// early, holds a word that does not convert, has no trait, community or OTU, or a count that is
/// negative or larger than the rest of the file could hold; after an error FreeGlobals2 and another
/// OpenFormda find everything in order.
void OpenFormda(int mode);

/// Replaces a formatted data file, from the arguments and the other globals. A phylogeny made for
/// fewer OTUs is filled up with zeros. Raises kFailedOutput when the file cannot be opened or any
/// of it cannot be written; the old file stays then.
void WriteFormda(int nOTUs, const char* name, const char* title, const float* const* B,
                 const float* const* W);
