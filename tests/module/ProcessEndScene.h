#pragma once

/// Creates the objects that are alive when the process ends, in the program itself or in a plug-in.
///
/// `what` names them, such as "static logger" or "server"; ProcessEndTest.cpp lists the names. Each
/// logger has received the lines "line 0" to "line 99", except with "logging threads", whose two
/// threads log until the process ends.
extern "C" __attribute__((visibility("default"))) void SetUpScene(const char* what);

/// Starts the library, for a program that does not link it.
extern "C" __attribute__((visibility("default"))) void StartLibrary();
