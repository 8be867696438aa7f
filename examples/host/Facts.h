#pragma once

/// Prints the paths that the library found.
void PrintPaths();

/// Prints the platform and the versions.
void PrintSystem();
