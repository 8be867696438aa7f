#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// The directory where loggers write and applications listen.
constexpr const char* c_temporaryDirectory = "/tmp";

enum class FileKind { Regular, Socket };

/// Returns the paths of this user's files of that kind and extension in a directory, sorted by
/// name.
std::vector<std::string> FindOwnFiles(const std::string& directory, std::string_view extension,
                                      FileKind kind);

} // namespace Tool
