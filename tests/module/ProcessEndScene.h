#pragma once

/// The objects that are alive when a process ends, in the program itself or in a plug-in.
///
/// `what` names it: a copy of the process-wide logger, a thread, a server and the like. Each logger
/// has received the lines "line 0" to "line 99".
extern "C" __attribute__((visibility("default"))) void SetUpScene(const char* what);

/// Starts the library, for a program that does not link it.
extern "C" __attribute__((visibility("default"))) void StartLibrary();
