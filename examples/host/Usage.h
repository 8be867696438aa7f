#pragma once

#include "Terminal.h"

/// How the host is called.
namespace Usage {

/// On the standard output, for a user who asks for it.
void Print();

/// On the error output, after what is wrong with the command line. Returns what a program ends with
/// that was called wrongly.
int Complain(const Text& fault);

} // namespace Usage
