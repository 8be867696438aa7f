#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// The exit code and output of a program.
struct ProgramResult {
    int exitCode;       ///< Minus the signal number if a signal ended the program.
    std::string output; ///< The bytes written to standard output.
    std::string errors; ///< The bytes written to standard error.
};

/// Runs `program` with `arguments` in this process's environment and waits for it to end. Fails the
/// test if the program cannot be started; the exit code is then the error number.
ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments);

} // namespace Toolkit::TestSupport
