#pragma once

#include <cstddef>

/// The regular-expression engine. All calls into it go through these functions.
///
/// Patterns and subjects are UTF-8. Nothing is thrown.
namespace Toolkit::PatternEngine {

// Results of Execute(), and codes of failures that the library itself meets.
constexpr int c_noMatch = -1;
constexpr int c_outOfMemory = -6;

// Options of Execute().
constexpr int c_notAtLineBegin = 0x80;
constexpr int c_notAtLineEnd = 0x100;
constexpr int c_notEmpty = 0x400;
/// The subject is known to be valid, and the start offset to be at a character.
constexpr int c_trusted = 0x2000;

/// Compiles the null-terminated `pattern`; Free() releases what is returned.
///
/// Null when it has a fault, with a text that is never released and the place in bytes. Nesting
/// for which the thread's stack does not suffice is a fault too.
void* Compile(const char* pattern, const char*& errorText, int& errorOffset);

/// Releases a compiled pattern, which may be null.
void Free(void* code);

/// Searches the subject from `startOffset` on and fills `offsets` with pairs of begin and end.
///
/// Returns the number of pairs set, 0 when there are more than a third of `offsetCount`, or a
/// negative code. What would take more stack than the thread has left ends with a code, and so does
/// what takes too many steps.
int Execute(const void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount);

// The table of group names; negative when it cannot be had. An entry is the group's number in two
// bytes, the higher one first, and the null-terminated name.
int GetNameCount(const void* code, int& count);
int GetNameEntrySize(const void* code, int& size);
int GetNameTable(const void* code, const unsigned char*& table);

} // namespace Toolkit::PatternEngine
