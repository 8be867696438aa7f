#pragma once

#include <cstddef>
#include <string>

/// The regular-expression engine. All calls into it go through these functions.
///
/// CMake chooses the source that implements them: PatternEngine.Pcre.cpp or
/// PatternEngine.Pcre2.cpp. Both accept the same options and return the same results and codes,
/// those of PCRE 1. Only the message and the position of a compile error differ.
///
/// Patterns and subjects are UTF-8. Nothing but std::bad_alloc is thrown.
namespace Toolkit::Pcre {

/// The engine in use and its version, such as "PCRE 8.39 2016-06-14".
std::string GetVersion();

// Results of Execute(). What PCRE 2 reports is translated to these numbers, which are PCRE 1's.
constexpr int c_noMatch = -1;
constexpr int c_outOfMemory = -6;
constexpr int c_recursionLimit = -21;

// Options of Execute().
constexpr int c_anchored = 0x10;
constexpr int c_notAtLineBegin = 0x80;
constexpr int c_notAtLineEnd = 0x100;
constexpr int c_notEmpty = 0x400;
/// The subject is known to be valid, and the start offset not to be inside a character.
constexpr int c_trusted = 0x2000;
/// A search that would read beyond the end of the subject returns a negative code other than
/// c_noMatch.
constexpr int c_partial = 0x08000000;

/// Compiles the null-terminated `pattern`. The caller releases the result with Free().
///
/// Returns null on a compile error, with a static string in `errorText` and the position in bytes
/// in `errorOffset`; on success these become null and 0.
///
/// A pattern that needs more stack than is left may be compiled on a new thread. If that thread
/// cannot be created, or if parentheses are nested too deeply for the stack, that is an error, too.
void* Compile(const char* pattern, const char*& errorText, int& errorOffset);

/// Releases a compiled pattern, which may be null.
void Free(void* code);

/// Searches the subject from `startOffset` on and fills `offsets` with pairs of start and end.
///
/// Returns the number of pairs set, 0 when `offsets` has no room for all (each pair needs three
/// numbers), or a negative code. A search that takes too many steps or too much memory ends with a
/// negative code. With PCRE 1, so does a search that needs more stack than is left; if the system
/// does not know the stack, the search is first repeated on a new thread. Only one search at a time
/// may use a compiled pattern.
int Execute(void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount);

// Read the table of group names. Each returns a negative number on failure. An entry is the number
// of the group in two bytes, the high byte first, and the null-terminated name. Free() invalidates
// the table.
int GetNameCount(const void* code, int& count);
int GetNameEntrySize(const void* code, int& size);
int GetNameTable(const void* code, const unsigned char*& table);

} // namespace Toolkit::Pcre
