#pragma once

#include "Terminal.h"

// Restarts the host: the new process gets only "-restart" on its command line, and reads the old
// command line from a file in the data folder.

/// Saves the line and starts the new process. Returns false if the line cannot be saved or the
/// restart cannot begin, but does not detect whether the new process fails to start. Throws
/// `std::bad_alloc`.
bool BeginRestart(const Text& startLine);

/// Called in the new process. Returns the saved line; "-serve" if the file cannot be opened.
Text ReadSavedLine();

/// Called in the new process after the old one has ended. Completes the restart.
void FinishRestart();
