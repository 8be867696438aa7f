#pragma once

#include "toolkit/core/TString.h"
#include "toolkit/regExp/MatchResult.h"
#include "toolkit/regExp/PatternRun.Private.h"

#include <cstddef>

namespace Toolkit {

/// Replaces every match of a pattern in a string.
///
/// After each replacement, the search continues in the changed string, right after the replacement,
/// at an offset that is truncated to 16 bits. Each search first checks that the whole string is
/// UTF-8. Where the result is the same, the class skips the check and copies the string only once.
class WholeMatchReplacement {
public:
    /// Throws if `pattern` does not compile. `replacement` must outlive the object.
    WholeMatchReplacement(const TString<char>& pattern, const TString<char>& replacement,
                          const TString<char>& subject);

    /// Returns the string with the replacements. Call Run() only once.
    TString<char> Run();

private:
    void Search(std::size_t start, bool isTrusted);
    void SearchAfter(std::size_t position);
    bool IsTrustedAt(std::size_t position) const;
    void ReplaceOne();
    void ReplaceInOnePass();
    std::size_t MatchBegin() const { return static_cast<std::size_t>(m_offsets[0]); }
    std::size_t MatchEnd() const { return static_cast<std::size_t>(m_offsets[1]); }

    const PatternCode m_code;
    const TString<char>& m_replacement;
    const bool m_keepsUtf8;
    const bool m_ignoresPrecedingText;
    TString<char> m_text;
    int m_resultCode = 0;
    int m_offsets[MatchResult::c_ovectorSize];
};

} // namespace Toolkit
