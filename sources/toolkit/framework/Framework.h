#pragma once

// Starts and stops wxWidgets, which counts its starts.
namespace Toolkit::Framework {

/// Starts wxWidgets. If it returns true, call Stop() later. Returns false if wxWidgets cannot be
/// started, and in a program that runs its own application object: a second start would initialise
/// that object again, and the matching stop would delete it.
bool Start();

/// Undoes one successful start; the last call shuts wxWidgets down. On a thread other than the one
/// that initialised wxWidgets, the call is only counted: the next Start(), or the next Stop() on
/// the initialising thread, makes up for it.
void Stop();

/// Whether wxWidgets is started, by the library or by the program.
bool IsStarted();

/// Whether the program runs its own application object, which has started wxWidgets. Also true if
/// the program passed its arguments to wxInitialize().
bool DoesProgramRunItsOwnApplication();

} // namespace Toolkit::Framework
