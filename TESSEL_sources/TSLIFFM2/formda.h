#pragma once
/// \file
/// The formatted data file of a session: the data set's persistent form.

/// Reads the file named by whichFormda into the globals of TSLGLOB/dataset.h and clears dirtyOrig.
/// `mode` is always 1. Raises kFailedOpening, or kEndOfFile for a file that ends early, holds a
/// word that does not convert, or a count that is negative or larger than the file could hold.
void OpenFormda(int mode);

/// Writes a formatted data file from the arguments and the other globals. Raises kFailedOutput.
void WriteFormda(int nOTUs, const char* name, const char* title, const float* const* B,
                 const float* const* W);
