#include "toolkit/core/TString.h"

#include "toolkit/base/Lanes.h"
#include "toolkit/base/Numbers.h"
#include "toolkit/core/CaseFolding.Private.h"
#include "toolkit/core/SubstringSearch.Private.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <functional>
#include <iterator>
#include <string_view>

namespace {

namespace Base = Toolkit::Base;
using Toolkit::FoldForComparison;

// The bit in which an ASCII letter and its capital differ.
constexpr std::int32_t c_asciiCaseBit = 0x20;

// How many characters are compared before the loop looks at the result.
constexpr std::size_t c_blockLength = 16;

// Whether towlower() maps every ASCII capital to its small letter. Turkic locales map I to a
// dotless i, and differ in no other letter.
bool DoesLocaleFoldAsciiPlainly()
{
    return std::towlower(L'I') == L'i';
}

// Whether both blocks are ASCII and equal ignoring case.
bool IsSameAsciiBlock(const wchar_t* left, const wchar_t* right)
{
    using Characters = Base::Lanes<std::int32_t>;
    Characters wrong = {};
    for (std::size_t i = 0; i < c_blockLength; i += Base::c_laneCount<std::int32_t>) {
        const auto a = Base::LoadLanes<std::int32_t>(left + i);
        const auto b = Base::LoadLanes<std::int32_t>(right + i);
        const Characters folded = a | c_asciiCaseBit;
        const Characters isLetter = (folded >= 'a') & (folded <= 'z');
        wrong |= (a ^ b) & ~(isLetter & c_asciiCaseBit);
        wrong |= (a | b) & ~0x7F;
    }
    return Base::AreAllZero(wrong);
}

// Compares `length` folded characters; returns -1, 0 or 1.
template <typename T>
int CompareFolded(const T* left, const T* right, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        if (left[i] == right[i])
            continue;
        const int a = FoldForComparison(left[i]);
        const int b = FoldForComparison(right[i]);
        if (a != b)
            return a > b ? 1 : -1;
    }
    return 0;
}

// CompareNoCase/100000: folding one character at a time takes 10 times as long.
int CompareFoldedBlocks(const wchar_t* left, const wchar_t* right, std::size_t length)
{
    std::size_t done = 0;
    if (length >= c_blockLength && DoesLocaleFoldAsciiPlainly()) {
        for (; done + c_blockLength <= length; done += c_blockLength) {
            if (IsSameAsciiBlock(left + done, right + done))
                continue;
            if (const int order = CompareFolded(left + done, right + done, c_blockLength))
                return order;
        }
    }
    return CompareFolded(left + done, right + done, length - done);
}

int CompareLengths(std::size_t left, std::size_t right)
{
    if (left == right)
        return 0;
    return left < right ? -1 : 1;
}

constexpr bool IsSpaceOrTab(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

// FreshTokens/100000: searching the delimiters for each character takes three times as long.
//
// Finds the next character that is, or is not, one of a set.
class DelimiterScanner {
public:
    explicit DelimiterScanner(const TString<wchar_t>& delimiters) : m_delimiters(delimiters)
    {
        for (const wchar_t delimiter : delimiters) {
            if (const std::size_t index = GetTableIndex(delimiter); index < c_tableSize)
                m_table[index] = true;
            else
                m_hasOthers = true;
        }
    }

    std::size_t FindDelimiter(const std::wstring& text, std::size_t from) const
    {
        if (m_delimiters.size() == 1)
            return text.find(m_delimiters.front(), from);
        return Find(text, from, true);
    }

    std::size_t FindOther(const std::wstring& text, std::size_t from) const
    {
        return Find(text, from, false);
    }

private:
    static std::size_t GetTableIndex(wchar_t character)
    {
        return std::char_traits<wchar_t>::to_int_type(character);
    }

    bool IsDelimiter(wchar_t character) const
    {
        if (const std::size_t index = GetTableIndex(character); index < c_tableSize)
            return m_table[index];
        return m_hasOthers && m_delimiters.find(character) != std::wstring::npos;
    }

    std::size_t Find(const std::wstring& text, std::size_t from, bool isDelimiter) const
    {
        for (std::size_t i = from; i < text.size(); ++i) {
            if (IsDelimiter(text[i]) == isDelimiter)
                return i;
        }
        return std::wstring::npos;
    }

    static constexpr std::size_t c_tableSize = 128;

    const TString<wchar_t>& m_delimiters;
    std::array<bool, c_tableSize> m_table{};
    bool m_hasOthers = false;
};

// Tokens/100000: new strings for each call take three times as long.
//
// Stores tokens in the strings that a vector already contains, to reuse their memory.
class TokenWriter {
public:
    explicit TokenWriter(std::vector<TString<wchar_t>>& tokens) : m_tokens(tokens) {}

    void Append(const wchar_t* text, std::size_t length)
    {
        if (m_count < m_tokens.size())
            m_tokens[m_count].assign(text, length);
        else
            m_tokens.emplace_back(std::wstring(text, length));
        ++m_count;
    }

    void Finish() { m_tokens.resize(m_count); }

private:
    std::vector<TString<wchar_t>>& m_tokens;
    std::size_t m_count = 0;
};

bool IsElementOf(const std::vector<TString<wchar_t>>& texts, const TString<wchar_t>& text)
{
    const std::less<> isBefore;
    return !isBefore(&text, texts.data()) && isBefore(&text, texts.data() + texts.size());
}

void SplitText(const std::wstring& text, const DelimiterScanner& scanner, bool skipEmpty,
               TokenWriter& writer)
{
    constexpr std::size_t npos = std::wstring::npos;
    std::size_t start = skipEmpty ? scanner.FindOther(text, 0) : 0;
    while (start != npos) {
        const std::size_t end = scanner.FindDelimiter(text, start);
        writer.Append(text.data() + start, std::min(end, text.size()) - start);
        if (end == npos)
            break;
        start = skipEmpty ? scanner.FindOther(text, end) : end + 1;
    }
}

// Whether a replacement can contain an occurrence, or form one with the characters before it, after
// it, or both.
bool CanJoin(const std::wstring& from, const std::wstring& to)
{
    for (std::size_t length = 1; length < from.size(); ++length) {
        const std::wstring_view start = std::wstring_view(from).substr(0, length);
        const std::wstring_view end = std::wstring_view(from).substr(length);
        if (to.starts_with(end) || to.ends_with(start) ||
            end.substr(0, end.size() - 1).starts_with(to))
            return true;
    }
    return to.find(from) != std::wstring::npos;
}

// Replace/0: the general pass takes 1.7 times as long.
//
// Replaces from left to right. Only correct if CanJoin() returns false.
void ReplaceApart(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    std::wstring result;
    result.reserve(text.size());
    std::size_t next = 0;
    for (std::size_t hit; (hit = text.find(from, next)) != std::wstring::npos;) {
        result.append(text, next, hit - next).append(to);
        next = hit + from.size();
    }
    result.append(text, next);
    text = std::move(result);
}

// Replace/3: searching from the beginning each time takes 80 times as long.
//
// Replaces as if every search started at the beginning again, but in one pass.
//
// The string consists of a done part, which never contains `from`, a gap, and an unread part.
// Characters move from the unread part to the done part, so the leftmost match always ends at the
// character just moved. The match is cut off, and its replacement becomes unread.
class ReplacementPass {
public:
    ReplacementPass(std::wstring& text, const std::wstring& from, const std::wstring& to)
        : m_text(text), m_from(from), m_to(to)
    {
    }

    void Run()
    {
        while (MoveThroughNextCandidate()) {
            if (EndsWithOccurrence())
                ReplaceOccurrence();
        }
        m_text.resize(m_done);
    }

private:
    // Moves characters up to and including the next one that may complete an occurrence. Returns
    // false if there is none; all characters are then moved.
    bool MoveThroughNextCandidate()
    {
        const std::size_t hit = m_text.find(m_from.back(), m_unread);
        const std::size_t end = hit == std::wstring::npos ? m_text.size() : hit + 1;
        wchar_t* const data = m_text.data();
        std::copy(data + m_unread, data + end, data + m_done);
        m_done += end - m_unread;
        m_unread = end;
        return hit != std::wstring::npos;
    }

    bool EndsWithOccurrence() const
    {
        return m_done >= m_from.size() &&
               m_text.compare(m_done - m_from.size(), m_from.size(), m_from) == 0;
    }

    void ReplaceOccurrence()
    {
        m_done -= m_from.size();
        if (m_unread - m_done < m_to.size())
            WidenGap();
        m_unread -= m_to.size();
        m_to.copy(m_text.data() + m_unread, m_to.size());
    }

    // Makes room for this replacement and, because the length at least doubles, for many more.
    void WidenGap()
    {
        const std::size_t room = m_text.size() + m_to.size();
        m_text.insert(m_unread, room, L'\0');
        m_unread += room;
    }

    std::wstring& m_text;
    const std::wstring& m_from;
    const std::wstring& m_to;
    std::size_t m_done = 0;   // the end of the done part
    std::size_t m_unread = 0; // the start of the unread part
};

// Works on a copy, so that the string is unchanged when out of memory.
void ReplaceJoined(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    std::wstring result(text);
    ReplacementPass(result, from, to).Run();
    text = std::move(result);
}

} // namespace

template <>
const TString<char>& TString<char>::Empty()
{
    static const TString<char> empty;
    return empty;
}

template <>
const TString<wchar_t>& TString<wchar_t>::Empty()
{
    static const TString<wchar_t> empty;
    return empty;
}

template <>
int TString<char>::compareNoCase(const TString& other) const
{
    const int order = CompareFolded(data(), other.data(), std::min(size(), other.size()));
    return order != 0 ? order : CompareLengths(size(), other.size());
}

template <>
int TString<wchar_t>::compareNoCase(const TString& other) const
{
    const int order = CompareFoldedBlocks(data(), other.data(), std::min(size(), other.size()));
    return order != 0 ? order : CompareLengths(size(), other.size());
}

template <>
bool TString<char>::HasSubstring(const TString& needle) const
{
    return Toolkit::ContainsNoCase<char>(c_str(), needle.c_str());
}

template <>
bool TString<wchar_t>::HasSubstring(const TString& needle) const
{
    return Toolkit::ContainsNoCase<wchar_t>(c_str(), needle.c_str());
}

template <>
TString<wchar_t>& TString<wchar_t>::Trim()
{
    const auto first = std::find_if_not(begin(), end(), IsSpaceOrTab);
    const auto last =
        std::find_if_not(rbegin(), std::make_reverse_iterator(first), IsSpaceOrTab).base();
    erase(last, end());
    erase(begin(), first);
    return *this;
}

template <>
TString<wchar_t>& TString<wchar_t>::ToLower()
{
    for (wchar_t& character : *this)
        character = Toolkit::FoldNarrow(character);
    return *this;
}

template <>
void TString<wchar_t>::Replace(const TString& from, const TString& to)
{
    if (from.empty() || find(from) == npos)
        return;
    if (&from == this || &to == this)
        Replace(TString(from), TString(to));
    else if (CanJoin(from, to))
        ReplaceJoined(*this, from, to);
    else
        ReplaceApart(*this, from, to);
}

template <>
unsigned int TString<wchar_t>::ToUint32() const
{
    unsigned int value = 0;
    Base::ParseNumber<wchar_t>(*this, value);
    return value;
}

template <>
int TString<wchar_t>::ToInt32() const
{
    int value = 0;
    Base::ParseNumber<wchar_t>(*this, value);
    return value;
}

template <>
void TString<wchar_t>::GetTokens(const TString& delimiters, std::vector<TString>& tokens,
                                 bool skipEmpty) const
{
    // Writing the tokens would overwrite a string that is still being read.
    if (IsElementOf(tokens, *this) || IsElementOf(tokens, delimiters)) {
        TString(*this).GetTokens(TString(delimiters), tokens, skipEmpty);
        return;
    }
    TokenWriter writer(tokens);
    try {
        SplitText(*this, DelimiterScanner(delimiters), skipEmpty, writer);
        writer.Finish();
    } catch (...) {
        // Some tokens have already been overwritten.
        tokens.clear();
        throw;
    }
}
