#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace Toolkit::MacStandIns {

/// Sets the path that _NSGetExecutablePath() stores; empty until then.
void SetExecutablePath(const std::string& path);

/// Sets the user that getpeereid() reports. With `std::nullopt`, getpeereid() reports the peer's
/// real user.
void SetPeerUser(std::optional<uid_t> user);

} // namespace Toolkit::MacStandIns
