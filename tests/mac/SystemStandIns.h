#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace Toolkit::MacStandIns {

/// Sets what _NSGetExecutablePath() returns.
void SetExecutablePath(const std::string& path);

/// Sets the user that getpeereid() returns; with `std::nullopt` it returns the peer's real user.
void SetPeerUser(std::optional<uid_t> user);

} // namespace Toolkit::MacStandIns
