#pragma once

#include <cstdlib>

/// Aborts when a property does not hold, which a fuzzing engine reports as a finding.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
