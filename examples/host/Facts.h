#pragma once

/// Prints where the library found things.
void PrintPaths();

/// Prints on what the host runs.
void PrintSystem();
