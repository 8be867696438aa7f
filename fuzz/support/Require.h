#pragma once

#include <cstdlib>

/// Aborts if a property does not hold. The fuzzing engine reports that as a finding.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}
