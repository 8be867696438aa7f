#pragma once

/// Creates objects that nothing destroys before the program ends or the plug-in is unloaded. The
/// program and each plug-in have their own copy of this function.
///
/// `what` is one of the names that ProcessEndTest.cpp lists, for example "static logger". Each
/// logger gets the lines "line 0" to "line 99". With "logging threads", two threads log other lines
/// until the process ends instead.
extern "C" __attribute__((visibility("default"))) void SetUpScene(const char* what);

/// Starts the library. Called by ProcessEndUnlinkedHost, which does not link it.
extern "C" __attribute__((visibility("default"))) void StartLibrary();
