#pragma once

#include "Terminal.h"

// The host's usage message.

/// Prints the usage to standard output, for a user who asks for help.
void PrintUsage();

/// Prints `error`, which says what is wrong with the command line, and the usage to standard error.
/// Returns the exit code for an invalid command line.
int ComplainWithUsage(const Text& error);
