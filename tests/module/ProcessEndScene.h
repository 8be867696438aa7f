#pragma once

/// What is alive when a process ends: in the program itself, and in a plug-in that it loads.
///
/// `what` names it: a copy of the process-wide logger, a thread, a server and the like. Each logger
/// has been given the lines "line 0" to "line 99".
extern "C" __attribute__((visibility("default"))) void SetUpScene(const char* what);

/// Starts the library, for a program that does not know it.
extern "C" __attribute__((visibility("default"))) void StartLibrary();
