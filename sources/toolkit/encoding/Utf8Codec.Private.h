#pragma once

#include <cstddef>
#include <string>

/// UTF-8 (RFC 3629) for whole texts, null characters included.
namespace Toolkit::Utf8Codec {

/// Appends the UTF-8 form of `length` characters to `bytes`; false, with `bytes` unchanged, when
/// one of them is above U+10FFFF or negative. A surrogate is written as its three bytes.
bool AppendEncoded(std::string& bytes, const wchar_t* text, std::size_t length);

/// Appends the characters of `length` bytes to `text`; false, with `text` unchanged, when they are
/// not valid UTF-8.
bool AppendDecoded(std::wstring& text, const char* bytes, std::size_t length);

} // namespace Toolkit::Utf8Codec
