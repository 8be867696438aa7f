#pragma once

#include <cstddef>
#include <string>

// UTF-8 (RFC 3629). Functions that build a string throw `std::bad_alloc`, so that callers can tell
// out of memory from an empty or invalid string. An append that throws may have added some text.
namespace Toolkit::Base {

/// Returns `text`, up to its first null character, as UTF-8; empty if AppendEncodedUtf8() rejects
/// one of these characters.
std::string EncodeUtf8(const std::wstring& text);

/// Returns `bytes`, up to the first null byte, as a wide string; empty if these bytes are not valid
/// UTF-8.
std::wstring DecodeUtf8(const std::string& bytes);

/// The same; returns the empty string for a null pointer.
std::wstring DecodeUtf8(const char* bytes);

/// Encodes `length` characters, including null characters, and appends them to `bytes`. Returns
/// false, with `bytes` unchanged, if one of them is above U+10FFFF or negative. Surrogates are
/// encoded as three bytes each, which the functions that decode reject.
bool AppendEncodedUtf8(std::string& bytes, const wchar_t* text, std::size_t length);

/// Decodes `length` bytes, including null bytes, and appends the characters to `text`. Returns
/// false, with `text` unchanged, if the bytes are not valid UTF-8.
bool AppendDecodedUtf8(std::wstring& text, const char* bytes, std::size_t length);

/// Whether `length` bytes, including null bytes, are valid UTF-8.
bool IsUtf8(const char* bytes, std::size_t length);

/// Returns the first character of the valid UTF-8 from `at` to `end`, and moves `at` past it. The
/// first byte must be above 0x7F.
wchar_t DecodeNextMultibyteCharacter(const char*& at, const char* end);

/// Returns the first character of the valid UTF-8 from `at` to `end`, which must not be empty, and
/// moves `at` past it.
inline wchar_t DecodeNextCharacter(const char*& at, const char* end)
{
    if (static_cast<signed char>(*at) >= 0)
        return *at++;
    // A copy, so that the caller's `at` may stay in a register.
    const char* next = at;
    const wchar_t character = DecodeNextMultibyteCharacter(next, end);
    at = next;
    return character;
}

} // namespace Toolkit::Base
