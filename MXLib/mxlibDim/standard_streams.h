#pragma once
/// \file
/// The three standard descriptors.

/// Opens those that were closed when the process began on the null device. To be called before any
/// file is opened: a file that got the number of one would take in what is written to the screen.
void OpenClosedStandardStreams();
