#pragma once

namespace Toolkit {

// What can be said of a null-terminated pattern that compiles, without parsing it completely. A
// false is always safe.

/// Whether matches begin and end between characters, never inside one.
bool MatchesWholeCharacters(const char* pattern);

/// Whether a match depends only on where it is tried and on what follows: no anchor, no word
/// boundary, no look-behind, no control of the search.
bool LooksAheadOnly(const char* pattern);

} // namespace Toolkit
