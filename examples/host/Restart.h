#pragma once

#include "Terminal.h"

/// A restart: the host starts itself anew, with nothing but "-restart" on the command line. The
/// line by which it was started itself waits in a file of its data folder.
namespace Restart {

/// Keeps the line and starts the new process.
bool Begin(const Text& startLine);

/// In the new process: the line that was kept, or one that just serves.
Text KeptLine();

/// In the new process, once the one before has ended.
void Finish();

} // namespace Restart
