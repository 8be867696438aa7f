#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

namespace Toolkit::MacStandIns {

/// Sets what _NSGetExecutablePath() returns.
void SetExecutablePath(const std::string& path);

/// Sets the user that getpeereid() returns; without one, it is the user of the peer.
void SetPeerUser(std::optional<uid_t> user);

} // namespace Toolkit::MacStandIns
