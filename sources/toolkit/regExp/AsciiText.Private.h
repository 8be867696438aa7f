#pragma once

#include <cstddef>

namespace Toolkit {

/// Whether every byte is an ASCII character. Such a subject is valid UTF-8, so the engine need not
/// check it.
bool IsAscii(const char* text, std::size_t length);

} // namespace Toolkit
