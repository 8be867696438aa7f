#pragma once

#include <string>
#include <vector>

namespace Tool {

/// The directory in which applications listen.
constexpr const char* c_temporaryDirectory = "/tmp";

/// Returns the sorted paths of the sockets in `directory` that belong to this user and have the
/// extension ".ipc".
std::vector<std::string> FindOwnSockets(const std::string& directory);

} // namespace Tool
