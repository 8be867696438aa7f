#pragma once

// Start and stop of wxWidgets, which counts its starts.
namespace Toolkit::Framework {

/// True when the start succeeded and needs a Stop(). False when wxWidgets cannot be started, and in
/// a program that runs its own application object: a second start would replace that object.
bool Start();

/// Undoes one successful start; the last call shuts wxWidgets down. A call on another thread than
/// that of the first start only counts: the next Start(), or the next Stop() on that thread, makes
/// up for it.
void Stop();

/// Whether wxWidgets is started, by the library or by the program.
bool IsStarted();

/// Whether the program runs its own application object, which has started wxWidgets.
bool DoesProgramRunItsOwnApplication();

} // namespace Toolkit::Framework
