#pragma once

/// Prints the names of the application and the paths that PathManager reports.
void PrintPaths();

/// Prints the platform, the versions of the library and of wxWidgets, and whether another host is
/// running.
void PrintSystem();
