#include "toolkit/regExp/AtomicRecursion.Private.h"
#include "toolkit/regExp/PatternItems.Private.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

constexpr std::string_view c_digits = "0123456789";

// Letters of settings such as (?i-x).
constexpr std::string_view c_settings = "imsxJUX-";

// The characters after "(?" in calls and in references by name.
constexpr std::string_view c_callCharacters = "R&P+-0123456789";

struct OpenGroup {
    std::size_t begin = 0; // in the output
    int number = 0;        // 0 for a group that does not capture
    std::string_view name;
    bool refersToItself = false;
    bool wasExtended = false; // before the group
    bool resetsNumbers = false;
    int countBefore = 0;  // of capturing groups
    int highestCount = 0; // in the alternatives so far
};

/// Copies a pattern item by item. The functions that copy return false for unknown syntax.
class Rewriter {
public:
    explicit Rewriter(const std::string& pattern) : m_pattern(pattern), m_rest(pattern) {}

    std::string Run()
    {
        while (!m_rest.empty()) {
            if (!CopyItem())
                return m_pattern;
        }
        return std::move(m_output);
    }

private:
    bool CopyItem();
    bool CopyEscape();
    bool CopyReference(std::size_t begin);
    bool CopyGroup();
    bool CopySpecialGroup();
    bool CopyCondition();
    bool CopySettings();
    bool CloseGroup();
    bool Copy(std::size_t length);
    bool CopyCall(std::size_t length);
    bool Open(std::size_t length, std::string_view name, bool captures);
    void BeginAlternative();

    void MarkReference(std::string_view nameOrNumber);
    bool StartsWith(std::string_view text) const { return m_rest.substr(0, text.size()) == text; }
    std::size_t MeasureThrough(char end, std::size_t from) const;
    std::size_t MeasureComment() const;

    const std::string& m_pattern;
    std::string_view m_rest;
    std::string m_output;
    std::vector<OpenGroup> m_open;
    int m_groupCount = 0;
    bool m_isExtended = false;
};

// A length of 0 means unknown syntax.
bool Rewriter::Copy(std::size_t length)
{
    m_output += m_rest.substr(0, length);
    m_rest.remove_prefix(std::min(length, m_rest.size()));
    return length > 0;
}

bool Rewriter::CopyCall(std::size_t length)
{
    m_output += "(?>";
    const bool isKnown = Copy(length);
    m_output += ')';
    return isKnown;
}

// Returns the length up to and including the first `end` at or after `from`; 0 when there is none.
std::size_t Rewriter::MeasureThrough(char end, std::size_t from) const
{
    const std::size_t place = m_rest.find(end, from);
    return place == std::string_view::npos ? 0 : place + 1;
}

// Returns the length of the comment from "#" to the newline; 0 when the pattern sets its own
// newlines, since the comment may then end elsewhere.
std::size_t Rewriter::MeasureComment() const
{
    const bool hasOwnNewline =
        m_pattern.find("(*CR") != std::string::npos || m_pattern.find("(*ANY") != std::string::npos;
    return hasOwnNewline ? 0 : std::min(m_rest.find('\n'), m_rest.size());
}

bool Rewriter::CopyItem()
{
    switch (m_rest.front()) {
    case '\\':
        return CopyEscape();
    case '(':
        return CopyGroup();
    case ')':
        return CloseGroup();
    case '[':
        return Copy(MeasureClass(m_rest.data()));
    case '#':
        return Copy(m_isExtended ? MeasureComment() : 1);
    case '|':
        BeginAlternative();
        return Copy(1);
    default:
        return Copy(1);
    }
}

bool Rewriter::CopyEscape()
{
    if (StartsWith("\\Q")) {
        const std::size_t end = m_rest.find("\\E");
        return Copy(std::min(end, m_rest.size()));
    }
    if (StartsWith("\\g<"))
        return CopyCall(MeasureThrough('>', 3));
    if (StartsWith("\\g'"))
        return CopyCall(MeasureThrough('\'', 3));
    if (StartsWith("\\g") || StartsWith("\\k"))
        return CopyReference(2);
    if (m_rest.size() > 1 && m_rest[1] >= '1' && m_rest[1] <= '9')
        return CopyReference(1);
    // \E ends a quotation and has no other effect. \c includes the next character, whatever it is.
    return Copy(StartsWith("\\c") ? 3 : 2);
}

// Copies a reference such as \2, \g-1, \g{name} or \k<name>, whose number or bracket is at `begin`.
bool Rewriter::CopyReference(std::size_t begin)
{
    const char bracket = m_rest.size() > begin ? m_rest[begin] : '\0';
    if (bracket == '{' || bracket == '<' || bracket == '\'') {
        const char end = bracket == '{' ? '}' : bracket == '<' ? '>' : '\'';
        const std::size_t length = MeasureThrough(end, begin + 1);
        if (length > 0)
            MarkReference(m_rest.substr(begin + 1, length - begin - 2));
        return Copy(length);
    }
    const std::size_t digits = m_rest.find_first_not_of(c_digits, begin + (bracket == '-' ? 1 : 0));
    const std::size_t length = std::min(digits, m_rest.size());
    MarkReference(m_rest.substr(begin, length - begin));
    return Copy(length);
}

void Rewriter::MarkReference(std::string_view nameOrNumber)
{
    int number = 0;
    std::from_chars(nameOrNumber.data(), nameOrNumber.data() + nameOrNumber.size(), number);
    if (number < 0)
        number += m_groupCount + 1;
    for (OpenGroup& group : m_open) {
        if (group.number > 0 && (group.number == number || group.name == nameOrNumber))
            group.refersToItself = true;
    }
}

bool Rewriter::CopyGroup()
{
    if (StartsWith("(*") || StartsWith("(?#") || StartsWith("(?C"))
        return Copy(MeasureThrough(')', 2));
    return StartsWith("(?") ? CopySpecialGroup() : Open(1, {}, true);
}

bool Rewriter::CopySpecialGroup()
{
    for (const std::string_view call : {"(?R", "(?&", "(?P>", "(?+"}) {
        if (StartsWith(call))
            return CopyCall(MeasureThrough(')', 2));
    }
    // "(?1)" or "(?-1)".
    const std::string_view inside = m_rest.substr(2);
    if (inside.find_first_of(c_digits) == (StartsWith("(?-") ? 1 : 0))
        return CopyCall(MeasureThrough(')', 2));
    if (StartsWith("(?P=")) {
        const std::size_t length = MeasureThrough(')', 4);
        MarkReference(m_rest.substr(4, length - 5));
        return Copy(length);
    }
    if (StartsWith("(?("))
        return CopyCondition();
    for (const std::string_view opening :
         {"(?<=", "(?<!", "(?<*", "(?:", "(?=", "(?!", "(?*", "(?>", "(?|"}) {
        if (StartsWith(opening))
            return Open(opening.size(), {}, false);
    }
    const std::size_t nameBegin = StartsWith("(?P<")                       ? 4
                                  : StartsWith("(?<") || StartsWith("(?'") ? 3
                                                                           : 0;
    if (nameBegin == 0)
        return CopySettings();
    const std::size_t length = MeasureThrough(StartsWith("(?'") ? '\'' : '>', nameBegin);
    return length > 0 && Open(length, m_rest.substr(nameBegin, length - nameBegin - 1), true);
}

// A condition that is an assertion is a group of its own.
bool Rewriter::CopyCondition()
{
    return StartsWith("(?(?") ? Open(2, {}, false) : Open(MeasureThrough(')', 3), {}, false);
}

bool Rewriter::CopySettings()
{
    const std::size_t end = std::min(m_rest.find_first_not_of(c_settings, 2), m_rest.size() - 1);
    if (m_rest[end] != ')' && m_rest[end] != ':')
        return false;
    const std::string_view letters = m_rest.substr(2, end - 2);
    const std::size_t extended = letters.find('x');
    const bool isExtended =
        extended == std::string_view::npos ? m_isExtended : extended < letters.find('-');
    const bool isKnown = m_rest[end] == ':' ? Open(end + 1, {}, false) : Copy(end + 1);
    m_isExtended = isExtended;
    return isKnown;
}

bool Rewriter::Open(std::size_t length, std::string_view name, bool captures)
{
    OpenGroup group;
    group.begin = m_output.size();
    group.number = captures ? ++m_groupCount : 0;
    group.name = name;
    group.wasExtended = m_isExtended;
    group.resetsNumbers = StartsWith("(?|");
    group.countBefore = m_groupCount;
    m_open.push_back(group);
    return Copy(length);
}

// In (?|...), the groups of every alternative start with the same number.
void Rewriter::BeginAlternative()
{
    if (m_open.empty() || !m_open.back().resetsNumbers)
        return;
    OpenGroup& group = m_open.back();
    group.highestCount = std::max(group.highestCount, m_groupCount);
    m_groupCount = group.countBefore;
}

bool Rewriter::CloseGroup()
{
    if (m_open.empty())
        return false;
    const OpenGroup group = m_open.back();
    m_open.pop_back();
    m_groupCount = std::max(m_groupCount, group.highestCount);
    m_isExtended = group.wasExtended;
    if (!group.refersToItself)
        return Copy(1);
    m_output.insert(group.begin, "(?>");
    Copy(1);
    m_output += ')';
    return true;
}

} // namespace

bool MayRecurse(const std::string& pattern)
{
    for (std::size_t at = pattern.find_first_of("(\\"); at != std::string::npos;
         at = pattern.find_first_of("(\\", at + 1)) {
        const char next = pattern[at + 1];
        const bool isEscape = pattern[at] == '\\';
        if (isEscape && (next == 'g' || next == 'k' || (next >= '1' && next <= '9')))
            return true;
        if (!isEscape && next == '?' && at + 2 < pattern.size() &&
            c_callCharacters.find(pattern[at + 2]) != std::string_view::npos)
            return true;
    }
    return false;
}

std::string MakeRecursionAtomic(const std::string& pattern)
{
    return MayRecurse(pattern) ? Rewriter(pattern).Run() : pattern;
}

} // namespace Toolkit
