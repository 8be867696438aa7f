#pragma once

#include <cstddef>

namespace Toolkit {

/// Whether every byte is an ASCII character. Such a subject is valid UTF-8, which saves the engine
/// its own check.
bool IsAscii(const char* text, std::size_t length);

} // namespace Toolkit
