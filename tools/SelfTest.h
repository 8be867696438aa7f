#pragma once

#include <vector>

namespace Tool {

/// A test of one part of the library; `run` returns whether that part works on this machine.
struct SelfTest {
    const char* name;
    bool (*run)();
};

const std::vector<SelfTest>& ListSelfTests();

} // namespace Tool
