#pragma once

#include <cstdlib>

/// Ends the program when a property does not hold: that is what a fuzzing engine looks for.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
