#pragma once
/// \file
/// The track file: the session's memory of its data file and of the last analysis.

/// Replaces the track file: its first two lines, or with `full` the whole record. Raises
/// kFailedOpening. Output that fails leaves the old file and raises nothing: a line on standard
/// error tells.
void WriteTrack(char full);

/// Reads the name of the data file from the track file into whichFormda; false when the track file
/// is empty. Raises kFailedOpening.
bool ReadDataFileName();

/// Reads it all. A file of two lines, or of another version, leaves everything but whichFormda as
/// it is. Raises kFailedOpening and kEndOfFile. Returns 1.
int ReadTrack();
