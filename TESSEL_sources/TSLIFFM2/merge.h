#pragma once
/// \file
/// Merging the data of two sessions.

#include "TSLIFFM2/data_fields.h"
#include "TSLIFFMT/selection.h"

/// Joins the data set in memory with that of the file secondFormda: the same traits and variables,
/// the OTUs, communities and species of both. Writes the result as the data file of the current
/// session, to which whichFormda then refers, and leaves it in memory; 1. The second session's OTUs
/// are recorded under the first one's communities. The second file is of the form of 2008 or of an
/// older one. 0, after the message, for sessions that do not match, of whose data set only dataName
/// and envName may have changed, and when no OTU would be left. Raises kFailedOpening,
/// kFailedOutput, and kEndOfFile for a second file that ends early or holds a word that does not
/// convert.
int MergeFormda(const char* secondFormda);

/// The same with the second file open; it is closed. `otus` are those left of the OTUs of both, the
/// first session's before the second's.
int MergeOpenFormda(const DataFile& second, Selection* otus);
