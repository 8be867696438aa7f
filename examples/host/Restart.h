#pragma once

#include "Terminal.h"

// Restarts the host: the new process gets only "-restart" on its command line, and reads the old
// command line from a file in the data folder.

/// Saves the line and starts the new process. False if the line cannot be saved or memory runs out;
/// a process that fails to start goes unnoticed.
bool BeginRestart(const Text& startLine);

/// Called in the new process. Returns the saved line; "-serve" if it cannot be read.
Text ReadSavedLine();

/// Called in the new process after the old one has ended. Completes the restart.
void FinishRestart();
