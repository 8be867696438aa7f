#pragma once

#include "Terminal.h"

// Restarts the host: the new process gets only "-restart" on its command line, and reads the old
// command line from a file in the data folder.

/// Saves the line and starts the new process.
bool BeginRestart(const Text& startLine);

/// In the new process: the saved line, or one that only serves.
Text ReadKeptLine();

/// In the new process, after the old one has ended.
void FinishRestart();
