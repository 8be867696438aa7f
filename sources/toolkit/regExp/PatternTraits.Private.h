#pragma once

namespace Toolkit {

// Properties of a null-terminated pattern that compiles, found without parsing it completely. False
// is always a safe answer.

/// Whether matches begin and end between characters, never inside one.
bool MatchesWholeCharacters(const char* pattern);

/// Whether a match depends only on the text after its start, never on the text before: the pattern
/// has no anchor except for the end, no word boundary, no look-behind and no verb.
bool IgnoresPrecedingText(const char* pattern);

} // namespace Toolkit
