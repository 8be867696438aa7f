#pragma once

// Start and stop of wxWidgets, which counts how often it was started.
namespace Toolkit::Framework {

/// True when wxWidgets has to be stopped once more. False when it cannot be started, and in a
/// program that runs an application object of its own: a second start would take that object away.
bool Start();

/// Undoes one successful start; the last one shuts wxWidgets down. On another thread than the one
/// that started wxWidgets first, it stays started until that one undoes a start.
void Stop();

/// Whether wxWidgets is started, by whomever.
bool IsStarted();

/// Whether the program runs an application object of its own, which has started wxWidgets.
bool ProgramRunsItsOwnApplication();

} // namespace Toolkit::Framework
