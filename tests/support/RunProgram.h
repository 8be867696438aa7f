#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// The exit code and output of a program.
struct ProgramResult {
    int exitCode; ///< Minus the signal number if a signal ended it.
    std::string output;
    std::string errors;
};

/// Runs `program` with `arguments` in this process's environment and waits for it to end.
ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

} // namespace Toolkit::TestSupport
