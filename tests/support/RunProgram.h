#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// How a program ended and what it said.
struct ProgramResult {
    int exitCode; ///< The negative number of the signal when one ended it.
    std::string output;
    std::string errors;
};

/// Runs `program` with `arguments` in this process's environment and waits for its end.
ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

} // namespace Toolkit::TestSupport
