#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Tool {

/// Where loggers write and services listen.
constexpr const char* c_temporaryDirectory = "/tmp";

enum class FileKind { Regular, Socket };

/// The paths of this user's files of that kind and extension there, sorted by name.
std::vector<std::string> OwnFilesInTemporaryDirectory(std::string_view extension, FileKind kind);

} // namespace Tool
