#pragma once

#include "Terminal.h"

/// A restart: the host starts a new process with nothing but "-restart" on the command line. Its
/// own command line is kept in a file of its data folder.
namespace Restart {

/// Keeps the line and starts the new process.
bool Begin(const Text& startLine);

/// In the new process: the line that was kept, or one that just serves.
Text KeptLine();

/// In the new process, once the one before has ended.
void Finish();

} // namespace Restart
