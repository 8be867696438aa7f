#pragma once

/// Creates the objects that are alive when the process ends, in the program itself or in a plug-in.
///
/// `what` names them: a copy of the process-wide logger, a thread, a server and the like. Each
/// logger has received the lines "line 0" to "line 99".
extern "C" __attribute__((visibility("default"))) void SetUpScene(const char* what);

/// Starts the library, for a program that does not link it.
extern "C" __attribute__((visibility("default"))) void StartLibrary();
