#pragma once

#include <string>
#include <vector>

namespace Tool {

/// The directory in which applications listen.
constexpr const char* c_temporaryDirectory = "/tmp";

/// Returns the paths of this user's sockets in a directory whose names end in ".ipc", sorted.
std::vector<std::string> FindOwnSockets(const std::string& directory);

} // namespace Tool
