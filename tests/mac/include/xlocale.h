#pragma once

// xlocale(3): newlocale(), freelocale() and strtod_l() are declared here on macOS.
#include <cstdlib>
#include <locale.h>
