#pragma once

#include <vector>

namespace Tool {

/// A part of the library, and whether it works on this machine.
struct SelfTest {
    const char* name;
    bool (*run)();
};

const std::vector<SelfTest>& ListSelfTests();

} // namespace Tool
