#pragma once
/// \file
/// Start-up, the menu tree and the session loop.

#include "mxlibDim/file_lock.h"

/// Starts the system and the main menu; the process ends in there.
[[noreturn]] void mainInit();

/// The main menu, until X ends the process. Errors raised by its own answers, by the preferences
/// and by the simulation end as those of a session do.
[[noreturn]] void MainMenu();

/// One session, from the opening of its files to its closing: the catch point of what it calls.
/// Every way out of the session gives the lock back.
void IFSession(FileLock lock = {});

/// Prints a screen heading of 70 columns.
void Menu(const char* title);

/// The screen DATA FOR SESSION: 0 when the session now has data, 1 when the user left without.
int SetFormda();
