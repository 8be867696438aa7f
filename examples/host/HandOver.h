#pragma once

#include "Terminal.h"

// How a newly started host finds the serving host and sends it a line.

/// Lines that control the serving host itself, instead of naming a command.
extern const wchar_t* const c_serve;
extern const wchar_t* const c_quit;
extern const wchar_t* const c_restart;

/// Returns the path of the serving host's socket. It depends only on the program and the user.
Text GetServicePath();

/// The result of SendToServingHost().
enum class HandOverResult {
    NoOtherHost, ///< No other host is known to be running.
    HandedOver,  ///< Another host is serving and has received the line.
    NotAccepted  ///< Another host is running, but does not accept the line.
};

/// Sends `line` to the serving host. If another host is running but not serving, tries again
/// for 15 seconds: it may be starting or stopping.
///
/// Tries to connect before it checks the single-instance lock: in a read-only home directory, a
/// serving host may not have been able to create the lock file.
HandOverResult SendToServingHost(const Text& line);
