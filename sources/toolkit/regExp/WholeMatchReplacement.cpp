#include "toolkit/base/Utf8.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/PatternTraits.Private.h"
#include "toolkit/regExp/StartBytes.Private.h"
#include "toolkit/regExp/WholeMatchReplacement.Private.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Toolkit {
namespace {

constexpr int c_options = Pcre::c_notAtLineBegin | Pcre::c_notAtLineEnd | Pcre::c_notEmpty;

// Highest offset at which a search can start; the next one wraps around to 0.
constexpr std::size_t c_maxStart = 0xFFFF;

// StartBytes pays off if more bytes than this remain to be searched.
constexpr std::size_t c_longText = 4096;

constexpr bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

WholeMatchReplacement::WholeMatchReplacement(const TString<char>& pattern,
                                             const TString<char>& replacement,
                                             const TString<char>& subject)
    : m_code(CompilePattern(pattern)), m_replacement(replacement),
      m_keepsUtf8(MatchesWholeCharacters(pattern.c_str()) &&
                  Base::IsUtf8(replacement.data(), replacement.size())),
      m_ignoresPrecedingText(IgnoresPrecedingText(pattern.c_str())), m_text(subject)
{
}

TString<char> WholeMatchReplacement::Run()
{
    Search(0, false);
    while (m_resultCode > 0) {
        const bool isInReach = MatchBegin() + m_replacement.size() <= c_maxStart;
        if (m_keepsUtf8 && m_ignoresPrecedingText && isInReach)
            ReplaceInOnePass();
        else
            ReplaceOne();
    }
    return std::move(m_text);
}

void WholeMatchReplacement::Search(std::size_t start, bool isTrusted)
{
    const int options = isTrusted ? c_options | Pcre::c_trusted : c_options;
    m_resultCode = ExecutePattern(m_code, m_text, start, options, m_offsets);
}

void WholeMatchReplacement::SearchAfter(std::size_t position)
{
    const std::size_t start = position & c_maxStart;
    Search(start, IsTrustedAt(start));
}

// The first search found that the text is UTF-8, and replacing whole characters with UTF-8 keeps it
// so. An offset that wrapped around may be inside a character, which the engine
// then reports.
bool WholeMatchReplacement::IsTrustedAt(std::size_t position) const
{
    return m_keepsUtf8 && (position == m_text.size() || !IsContinuation(m_text[position]));
}

void WholeMatchReplacement::ReplaceOne()
{
    const std::size_t begin = MatchBegin();
    // \K can move the start of a match past its end.
    const std::size_t end = std::max(begin, MatchEnd());
    m_text.replace(begin, end - begin, m_replacement);
    SearchAfter(begin + m_replacement.size());
}

// Searches the original text. For a pattern that ignores the preceding text, the search after a
// match finds the same next match as the search after its replacement, because the rest of the text
// is the same.
void WholeMatchReplacement::ReplaceInOnePass()
{
    // `ReplaceAll`: without StartBytes the engine tries each position between two matches, which
    // takes 5 times as long.
    std::optional<StartBytes> startBytes;
    if (m_text.size() - MatchEnd() > c_longText)
        startBytes.emplace(m_code, c_options);
    TString<char> output;
    output.reserve(m_text.size());
    std::size_t done = 0;
    while (m_resultCode > 0) {
        output.append(m_text, done, MatchBegin() - done).append(m_replacement);
        done = MatchEnd();
        if (output.size() > c_maxStart)
            break; // the offset wraps around from here on
        const std::size_t start = startBytes ? startBytes->FindFirst(m_text, done) : done;
        // Only an empty match could begin at the end, and c_notEmpty excludes it.
        if (start < m_text.size())
            Search(start, true);
        else
            m_resultCode = Pcre::c_noMatch;
    }
    const std::size_t position = output.size();
    output.append(m_text, done, TString<char>::npos);
    m_text = std::move(output);
    if (position > c_maxStart)
        SearchAfter(position);
}

} // namespace Toolkit
