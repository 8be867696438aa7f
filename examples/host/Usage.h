#pragma once

#include "Terminal.h"

// How the host is called.

/// Prints to the standard output, for a user who asks for help.
void PrintUsage();

/// Prints to the error output, after the error in the command line. Returns the exit code for a
/// wrong command line.
int ComplainWithUsage(const Text& fault);
