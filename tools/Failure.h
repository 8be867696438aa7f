#pragma once

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Tool {

/// Ends the command with a message on standard error and `ExitError`.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Returns a failure with `what` and the text of `errno`: "cannot read x: Permission denied".
inline Failure MakeSystemFailure(const std::string& what)
{
    return Failure(what + ": " + std::strerror(errno));
}

} // namespace Tool
