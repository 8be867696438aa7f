#pragma once

#include "Terminal.h"

/// How the host is called.
namespace Usage {

/// Prints to the standard output, for a user who asks for help.
void Print();

/// Prints to the error output, after the error in the command line. Returns the exit code for a
/// wrong command line.
int Complain(const Text& fault);

} // namespace Usage
