#pragma once

/// What can be said of a null-terminated pattern that compiles, without understanding it wholly: a
/// false is always safe.
namespace Toolkit::PatternTraits {

/// Whether matches begin and end between characters, never inside one.
bool MatchesWholeCharacters(const char* pattern);

/// Whether a match depends on nothing but where it is tried and on what follows: no anchor, no word
/// boundary, no assertion about what stands before, no control of the search.
bool LooksAheadOnly(const char* pattern);

} // namespace Toolkit::PatternTraits
