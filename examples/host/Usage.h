#pragma once

#include "Terminal.h"

// The host's usage message.

/// Prints the usage message to standard output, for a user who asks for help.
void PrintUsage();

/// Prints `error`, then the usage message, to standard error. `error` says what is wrong with the
/// command line. Returns the exit code for an invalid command line.
int ComplainWithUsage(const Text& error);
