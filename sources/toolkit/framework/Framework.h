#pragma once

// Start and stop of wxWidgets, which counts its starts.
namespace Toolkit::Framework {

/// Starts wxWidgets. True when that succeeded; a Stop() must follow then. False when wxWidgets
/// cannot be started, and in a program that runs its own application object, which a second start
/// would replace.
bool Start();

/// Undoes one successful start; the last call shuts wxWidgets down. On any other thread than that
/// of the first start, a call is only counted: the next Start(), or the next Stop() on that thread,
/// makes up for it.
void Stop();

/// Whether wxWidgets is started, by the library or by the program.
bool IsStarted();

/// Whether the program runs its own application object, which has started wxWidgets.
bool DoesProgramRunItsOwnApplication();

} // namespace Toolkit::Framework
