#pragma once

#include <cstddef>
#include <string>

// UTF-8 (RFC 3629). The functions throw `std::bad_alloc`, so that callers can tell out of memory
// from a text that is empty or not valid.
namespace Toolkit::Base {

/// `text` up to its first null character as UTF-8; empty when a character before it is not valid.
std::string EncodeUtf8(const std::wstring& text);

/// `bytes` up to the first null byte as text; empty when they are not valid UTF-8.
std::wstring DecodeUtf8(const std::string& bytes);

/// The same; a null pointer gives the empty string.
std::wstring DecodeUtf8(const char* bytes);

/// Appends the UTF-8 form of `length` characters, null characters included, to `bytes`; false, with
/// `bytes` unchanged, when one of them is above U+10FFFF or negative. A surrogate is written as its
/// three bytes.
bool AppendEncodedUtf8(std::string& bytes, const wchar_t* text, std::size_t length);

/// Appends the characters of `length` bytes, null bytes included, to `text`; false, with `text`
/// unchanged, when they are not valid UTF-8.
bool AppendDecodedUtf8(std::wstring& text, const char* bytes, std::size_t length);

/// Whether `length` bytes, null bytes included, are valid UTF-8.
bool IsUtf8(const char* bytes, std::size_t length);

/// Returns the first character of valid UTF-8 that begins with a byte above 0x7F, and moves `at`
/// past it.
wchar_t TakeLongCharacter(const char*& at, const char* end);

/// Returns the first character of valid UTF-8 that is not empty, and moves `at` past it.
inline wchar_t TakeCharacter(const char*& at, const char* end)
{
    if (static_cast<signed char>(*at) >= 0)
        return *at++;
    // A copy, so that the callers' `at` may stay in a register.
    const char* next = at;
    const wchar_t character = TakeLongCharacter(next, end);
    at = next;
    return character;
}

} // namespace Toolkit::Base
