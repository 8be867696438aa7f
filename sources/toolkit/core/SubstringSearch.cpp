#include "toolkit/core/CaseFolding.Private.h"
#include "toolkit/core/SubstringSearch.Private.h"

#include <cstddef>
#include <string>

namespace Toolkit {
namespace {

using CaseFolding::FoldNarrow;

// How many positions are filtered at once: enough for the compiler to use vector instructions.
constexpr std::size_t c_blockLength = 16;

// The characters that fold like one character of the needle, as far as there are two of them, such
// as a letter and its capital.
template <typename Char>
class FoldClass {
public:
    explicit FoldClass(Char character) : m_members{character, character}
    {
        const Char folded = FoldNarrow(character);
        std::size_t count = 0;
        for (int other = c_firstFolded; other <= c_lastFolded; ++other) {
            if (FoldNarrow(static_cast<Char>(other)) != folded)
                continue;
            if (count < 2)
                m_members[count] = static_cast<Char>(other);
            ++count;
        }
        if (count == 1)
            m_members[1] = m_members[0];
        m_isPair = count <= 2;
    }

    // Whether two members are all there are: the rule in every locale that glibc has.
    bool IsPair() const { return m_isPair; }

    // 1 when `character` is a member of the pair, else 0: without a branch.
    unsigned int Has(Char character) const
    {
        return unsigned{character == m_members[0]} | unsigned{character == m_members[1]};
    }

private:
    // tolower() changes no character outside this range.
    static constexpr int c_firstFolded = sizeof(Char) == 1 ? -0x80 : 0;
    static constexpr int c_lastFolded = sizeof(Char) == 1 ? 0x7F : 0xFF;

    Char m_members[2];
    bool m_isPair;
};

template <typename Char>
bool IsEqualFolded(const Char* left, const Char* right, std::size_t length)
{
    for (std::size_t i = 0; i < length; ++i) {
        if (left[i] != right[i] && FoldNarrow(left[i]) != FoldNarrow(right[i]))
            return false;
    }
    return true;
}

// Below this number of positions the filter costs more to prepare than it saves.
constexpr std::size_t c_filterThreshold = 512;

template <typename Char>
class FoldedNeedle {
public:
    FoldedNeedle(const Char* needle, std::size_t length)
        : m_needle(needle), m_length(length), m_first(FoldNarrow(needle[0]))
    {
    }

    bool IsIn(const Char* text, std::size_t length) const
    {
        if (length < m_length)
            return false;
        const std::size_t positions = length - m_length + 1;
        return positions < c_filterThreshold ? StartsAmong(text, positions)
                                             : StartsAmongFiltered(text, positions);
    }

private:
    bool StartsAmong(const Char* text, std::size_t positions) const
    {
        for (std::size_t i = 0; i < positions; ++i) {
            if (FoldNarrow(text[i]) == m_first && IsEqualFolded(text + i, m_needle, m_length))
                return true;
        }
        return false;
    }

    // Looks only at blocks in which the needle's first and last character both fit somewhere.
    bool StartsAmongFiltered(const Char* text, std::size_t positions) const
    {
        const FoldClass<Char> first(m_needle[0]);
        const FoldClass<Char> last(m_needle[m_length - 1]);
        if (!first.IsPair() || !last.IsPair())
            return StartsAmong(text, positions);

        std::size_t at = 0;
        for (; at + c_blockLength <= positions; at += c_blockLength) {
            if (MayStartInBlock(text + at, first, last) && StartsAmong(text + at, c_blockLength))
                return true;
        }
        return StartsAmong(text + at, positions - at);
    }

    bool MayStartInBlock(const Char* text, const FoldClass<Char>& first,
                         const FoldClass<Char>& last) const
    {
        const Char* const ends = text + m_length - 1;
        unsigned int found = 0;
        for (std::size_t i = 0; i < c_blockLength; ++i)
            found |= first.Has(text[i]) & last.Has(ends[i]);
        return found != 0;
    }

    const Char* m_needle;
    std::size_t m_length;
    Char m_first;
};

} // namespace

template <typename Char>
bool ContainsNoCase(const Char* text, const Char* needle)
{
    const std::size_t needleLength = std::char_traits<Char>::length(needle);
    if (needleLength == 0)
        return true;
    const std::size_t length = std::char_traits<Char>::length(text);
    return FoldedNeedle<Char>(needle, needleLength).IsIn(text, length);
}

template bool ContainsNoCase(const char* text, const char* needle);
template bool ContainsNoCase(const wchar_t* text, const wchar_t* needle);

} // namespace Toolkit
