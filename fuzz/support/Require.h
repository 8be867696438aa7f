#pragma once

#include <cstdlib>

/// Aborts unless `condition` holds. The fuzzing engine reports the abort as a finding.
inline void Require(bool condition)
{
    if (!condition)
        std::abort();
}
