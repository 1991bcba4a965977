#pragma once
/// \file
/// What becomes of the errors that routines raise (mxlibDim/failure.h).

#include <functional>

/// Runs `body`, a part of the program that may raise errors, and acts on a code that it raises:
/// message and bell on standard error, the reason for a person, then a wait and EndProgram(1);
/// kBackToMainMenu returns after its wait, with nothing released. An allocation that fails counts
/// as kOutOfMemory.
void RunWithCatchPoint(const std::function<void()>& body);
