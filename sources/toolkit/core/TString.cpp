#include "toolkit/core/TString.h"

#include "toolkit/core/CaseFolding.Private.h"
#include "toolkit/core/Numbers.Private.h"
#include "toolkit/core/SubstringSearch.Private.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

using Toolkit::CaseFolding::FoldForComparison;

// The distance between a letter and its capital in ASCII.
constexpr std::uint32_t c_asciiCaseBit = 0x20;

// How many characters are compared before the loop looks at what came out: enough for the compiler
// to use vector instructions, few enough to stop early.
constexpr std::size_t c_blockLength = 16;

constexpr std::uint32_t FoldAscii(std::uint32_t character)
{
    return character + (character - 'A' < 26 ? c_asciiCaseBit : 0);
}

// Whether towlower() folds ASCII letters in the plain way. Turkic locales fold I to a dotless i,
// and they do so for no other letter of ASCII.
bool LocaleFoldsAsciiPlainly()
{
    return std::towlower(L'I') == L'i';
}

// True when both blocks are ASCII and equal but for their case.
bool IsSameAsciiBlock(const wchar_t* left, const wchar_t* right)
{
    std::uint32_t bits = 0;
    std::uint32_t difference = 0;
    for (std::size_t i = 0; i < c_blockLength; ++i) {
        const auto a = static_cast<std::uint32_t>(left[i]);
        const auto b = static_cast<std::uint32_t>(right[i]);
        bits |= a | b;
        difference |= FoldAscii(a) ^ FoldAscii(b);
    }
    return bits < 0x80 && difference == 0;
}

// Compares `length` folded characters; -1, 0 or 1.
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

int CompareFoldedBlocks(const wchar_t* left, const wchar_t* right, std::size_t length)
{
    std::size_t done = 0;
    if (length >= c_blockLength && LocaleFoldsAsciiPlainly()) {
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

constexpr bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

// Finds the next character that is, or is not, one of a set.
class DelimiterScanner {
public:
    explicit DelimiterScanner(const TString<wchar_t>& delimiters) : m_delimiters(delimiters)
    {
        for (const wchar_t delimiter : delimiters) {
            if (IsInTable(delimiter))
                m_table[static_cast<std::size_t>(delimiter)] = true;
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
    static bool IsInTable(wchar_t character)
    {
        return static_cast<std::uint32_t>(character) < c_tableSize;
    }

    bool IsDelimiter(wchar_t character) const
    {
        if (IsInTable(character))
            return m_table[static_cast<std::size_t>(character)];
        return m_hasOthers && m_delimiters.find(character) != std::wstring::npos;
    }

    std::size_t Find(const std::wstring& text, std::size_t from, bool delimiter) const
    {
        for (std::size_t i = from; i < text.size(); ++i) {
            if (IsDelimiter(text[i]) == delimiter)
                return i;
        }
        return std::wstring::npos;
    }

    static constexpr std::size_t c_tableSize = 128;

    const TString<wchar_t>& m_delimiters;
    std::array<bool, c_tableSize> m_table{};
    bool m_hasOthers = false;
};

// Stores tokens over the texts that a vector already holds, whose memory is used again.
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

void SplitText(const std::wstring& text, const DelimiterScanner& scanner, bool skipEmpty,
               TokenWriter& writer)
{
    constexpr std::size_t none = std::wstring::npos;
    std::size_t start = skipEmpty ? scanner.FindOther(text, 0) : 0;
    while (start != none) {
        const std::size_t end = scanner.FindDelimiter(text, start);
        writer.Append(text.data() + start, std::min(end, text.size()) - start);
        if (end == none)
            break;
        start = skipEmpty ? scanner.FindOther(text, end) : end + 1;
    }
}

// Replaces from left to right where no replacement can become part of a new occurrence.
void ReplaceOnce(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    std::size_t hit = text.find(from);
    if (hit == std::wstring::npos)
        return;
    std::wstring result;
    result.reserve(text.size());
    std::size_t next = 0;
    for (; hit != std::wstring::npos; hit = text.find(from, next)) {
        result.append(text, next, hit - next).append(to);
        next = hit + from.size();
    }
    result.append(text, next);
    text = std::move(result);
}

// Replaces as if every search started anew at the beginning, yet in one pass.
//
// Behind a replacement the leftmost new occurrence starts at most from.size() - 1 characters before
// it. These characters and the replacement are taken back into `pending`, which stands between the
// text that is done and the text that is still to be read.
void ReplaceRepeatedly(std::wstring& text, const std::wstring& from, const std::wstring& to)
{
    const std::size_t overlap = from.size() - 1;
    std::wstring done;
    std::wstring pending;
    std::wstring window;
    std::size_t next = 0;
    while (true) {
        // Occurrences that start in `pending` end in it or in the `overlap` characters behind it.
        window.assign(pending).append(text, next, overlap);
        std::size_t hit = pending.empty() ? std::wstring::npos : window.find(from);
        if (hit == std::wstring::npos) {
            done.append(pending);
            pending.clear();
            hit = text.find(from, next);
            if (hit == std::wstring::npos)
                break;
            done.append(text, next, hit - next);
            next = hit + from.size();
        } else {
            done.append(window, 0, hit);
            const std::size_t end = hit + from.size();
            next += end > pending.size() ? end - pending.size() : 0;
            pending.erase(0, end);
        }
        const std::size_t kept = std::min(overlap, done.size());
        pending.insert(0, to).insert(0, done, done.size() - kept);
        done.resize(done.size() - kept);
    }
    done.append(text, next);
    text = std::move(done);
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
    const auto first = std::find_if_not(begin(), end(), IsBlank);
    const auto last = std::find_if_not(rbegin(), std::make_reverse_iterator(first), IsBlank).base();
    erase(last, end());
    erase(begin(), first);
    return *this;
}

template <>
TString<wchar_t>& TString<wchar_t>::ToLower()
{
    for (wchar_t& character : *this)
        character = Toolkit::CaseFolding::FoldNarrow(character);
    return *this;
}

template <>
void TString<wchar_t>::Replace(const TString& from, const TString& to)
{
    // An empty replacement joins what stood around it; any other separates it, unless the two share
    // characters.
    if (!to.empty() && to.find_first_of(from) == npos)
        ReplaceOnce(*this, from, to);
    else
        ReplaceRepeatedly(*this, from, to);
}

template <>
unsigned int TString<wchar_t>::ToUint32() const
{
    unsigned int value = 0;
    Toolkit::Numbers::Parse(*this, value);
    return value;
}

template <>
int TString<wchar_t>::ToInt32() const
{
    int value = 0;
    Toolkit::Numbers::Parse(*this, value);
    return value;
}

template <>
void TString<wchar_t>::GetTokens(const TString& delimiters, std::vector<TString>& tokens,
                                 bool skipEmpty) const
{
    TokenWriter writer(tokens);
    SplitText(*this, DelimiterScanner(delimiters), skipEmpty, writer);
    writer.Finish();
}
