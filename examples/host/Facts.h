#pragma once

/// Prints the paths that the library found.
void PrintPaths();

/// Prints the platform, the versions and whether another host is running.
void PrintSystem();
