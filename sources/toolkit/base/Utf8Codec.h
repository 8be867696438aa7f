#pragma once

#include "toolkit/core/TString.h"

#include <cstddef>
#include <string>

/// UTF-8 (RFC 3629) for the library itself. Want of memory is thrown, so that an operation can tell
/// it from a text that is empty or not valid.
namespace Toolkit::Utf8Codec {

/// What `UTF8::ToUTF8` gives.
TString<char> Encode(const TString<wchar_t>& text);

/// What `UTF8::ToUNICODE` gives.
TString<wchar_t> Decode(const TString<char>& bytes);

/// Appends the UTF-8 form of `length` characters, null characters included, to `bytes`; false, with
/// `bytes` unchanged, when one of them is above U+10FFFF or negative. A surrogate is written as its
/// three bytes.
bool AppendEncoded(std::string& bytes, const wchar_t* text, std::size_t length);

/// Appends the characters of `length` bytes, null bytes included, to `text`; false, with `text`
/// unchanged, when they are not valid UTF-8.
bool AppendDecoded(std::wstring& text, const char* bytes, std::size_t length);

} // namespace Toolkit::Utf8Codec
