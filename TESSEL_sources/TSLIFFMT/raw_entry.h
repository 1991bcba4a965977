#pragma once
/// \file
/// The dialogue that makes a formatted data file from raw text files.

/// Asks for the raw files and their layouts, reads and checks them, and writes whichFormda. Leaves
/// no table in memory. Raises kEndOfFile and kFailedOutput.
void IFFormat();
