#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Tool {

/// Thrown when a command fails. The program then prints the message to standard error and exits
/// with `ExitError`.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns a failure whose message is `action` and the system's message for `errno`: "cannot read
/// x: Permission denied".
inline Failure MakeSystemFailure(const std::string& action)
{
    return Failure(action + ": " + std::strerror(errno));
}

} // namespace Tool
