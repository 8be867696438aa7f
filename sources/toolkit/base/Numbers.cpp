#include "toolkit/base/Numbers.h"

#include "toolkit/base/FloatingPoint.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace Toolkit::Base {
namespace {

// White space of the classic locale.
template <typename Char>
constexpr bool IsSpace(Char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

template <typename Char>
constexpr bool IsDigit(Char character)
{
    return character >= '0' && character <= '9';
}

template <typename Char>
const Char* SkipSpace(const Char* at, const Char* end)
{
    return std::find_if_not(at, end, IsSpace<Char>);
}

// Reads decimal digits; returns false if the number is larger than `limit`.
template <typename Char>
bool ReadMagnitude(const Char* at, const Char* end, std::uint64_t limit, std::uint64_t& magnitude)
{
    magnitude = 0;
    for (; at != end && IsDigit(*at); ++at) {
        const auto digit = static_cast<std::uint64_t>(*at - '0');
        if (magnitude > (limit - digit) / 10)
            return false;
        magnitude = magnitude * 10 + digit;
    }
    return true;
}

template <typename Char, typename Integer>
void ParseInteger(const Char* at, const Char* end, Integer& value)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    using Limits = std::numeric_limits<Integer>;

    at = SkipSpace(at, end);
    const bool isNegative = at != end && *at == '-';
    if (isNegative || (at != end && *at == '+'))
        ++at;
    if (at == end || !IsDigit(*at))
        return;

    constexpr auto max = static_cast<std::uint64_t>(Limits::max());
    const std::uint64_t limit = std::is_signed_v<Integer> && isNegative ? max + 1 : max;
    std::uint64_t magnitude = 0;
    if (!ReadMagnitude(at, end, limit, magnitude))
        value = std::is_signed_v<Integer> && isNegative ? Limits::min() : Limits::max();
    else
        value = static_cast<Integer>(static_cast<Unsigned>(isNegative ? 0 - magnitude : magnitude));
}

// Collects the characters of a decimal floating-point number, without its sign, as `char`. Stops
// where an input stream of libstdc++ does. Allocates nothing for numbers that fit into m_short, as
// nearly all do.
class FloatingPointCharacters {
public:
    template <typename Char>
    FloatingPointCharacters(const Char* at, const Char* end)
    {
        at = SkipSpace(at, end);
        if (at != end && (*at == '-' || *at == '+')) {
            m_isNegative = *at == '-';
            ++at;
        }
        m_hasDigit = AppendDigits(at, end);
        if (at != end && *at == '.') {
            Append(*at++);
            m_hasDigit |= AppendDigits(at, end);
        }
        if (m_hasDigit && at != end && (*at == 'e' || *at == 'E')) {
            Append(*at++);
            if (at != end && (*at == '-' || *at == '+'))
                Append(*at++);
            AppendDigits(at, end);
        }
    }

    bool HasDigit() const { return m_hasDigit; }
    bool IsNegative() const { return m_isNegative; }
    const char* Begin() const { return m_long.empty() ? m_short : m_long.data(); }
    const char* End() const { return Begin() + (m_long.empty() ? m_length : m_long.size()); }

private:
    // Returns false if there is no digit.
    template <typename Char>
    bool AppendDigits(const Char*& at, const Char* end)
    {
        const Char* const begin = at;
        for (; at != end && IsDigit(*at); ++at)
            Append(*at);
        return at != begin;
    }

    // `character` must be ASCII.
    template <typename Char>
    void Append(Char character)
    {
        if (m_length < sizeof m_short) {
            m_short[m_length++] = static_cast<char>(character);
            return;
        }
        if (m_long.empty())
            m_long.assign(m_short, m_length);
        m_long.push_back(static_cast<char>(character));
    }

    char m_short[48];
    std::size_t m_length = 0;
    std::string m_long;
    bool m_hasDigit = false;
    bool m_isNegative = false;
};

template <typename Char>
void ParseDouble(const Char* at, const Char* end, double& value)
{
    const FloatingPointCharacters characters(at, end);
    if (!characters.HasDigit())
        return;

    double magnitude = 0;
    // An exponent without digits makes the whole number invalid.
    if (!ParseFloatingPoint(characters.Begin(), characters.End(), magnitude))
        return;
    value = characters.IsNegative() ? -magnitude : magnitude;
}

constexpr auto c_powersOfTen = [] {
    std::array<unsigned long long, 20> powers{};
    unsigned long long power = 1;
    for (unsigned long long& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

std::size_t CountDigits(unsigned long long magnitude)
{
    // Zero has one digit too. Setting the lowest bit never changes the number of digits.
    magnitude |= 1;
    // 1233 / 4096 approximates log10(2) closely enough for 64 bits.
    const auto countOrOneLess = static_cast<std::size_t>(std::bit_width(magnitude)) * 1233 >> 12;
    return countOrOneLess + (magnitude >= c_powersOfTen[countOrOneLess] ? 1 : 0);
}

// Writes `magnitude` in decimal from `begin` to `end`, which must be CountDigits(magnitude) apart.
template <typename Char, typename Unsigned>
void WriteDigits(Unsigned magnitude, Char* begin, Char* end)
{
    for (; end != begin; magnitude /= 10)
        *--end = static_cast<Char>('0' + magnitude % 10);
}

} // namespace

template <typename Char, typename Number>
void ParseNumber(std::basic_string_view<Char> text, Number& value)
{
    const Char* const begin = text.data();
    if constexpr (std::is_floating_point_v<Number>)
        ParseDouble(begin, begin + text.size(), value);
    else
        ParseInteger(begin, begin + text.size(), value);
}

template void ParseNumber(std::string_view, int&);
template void ParseNumber(std::string_view, unsigned int&);
template void ParseNumber(std::string_view, long long&);
template void ParseNumber(std::string_view, unsigned long long&);
template void ParseNumber(std::string_view, double&);
template void ParseNumber(std::wstring_view, int&);
template void ParseNumber(std::wstring_view, unsigned int&);
template void ParseNumber(std::wstring_view, long long&);
template void ParseNumber(std::wstring_view, unsigned long long&);
template void ParseNumber(std::wstring_view, double&);

template <typename Char>
FormattedNumber<Char>::FormattedNumber(long long value)
{
    const auto bits = static_cast<unsigned long long>(value);
    WriteInteger(value < 0 ? 0 - bits : bits, value < 0);
}

template <typename Char>
FormattedNumber<Char>::FormattedNumber(unsigned long long value)
{
    WriteInteger(value, false);
}

template <typename Char>
FormattedNumber<Char>::FormattedNumber(double value) : m_begin(m_buffer)
{
    constexpr int significantDigits = 6;
    char narrow[c_capacity];
    const char* const end = std::to_chars(narrow, narrow + c_capacity, value,
                                          std::chars_format::general, significantDigits)
                                .ptr;
    m_length = static_cast<std::size_t>(end - narrow);
    std::copy(narrow, narrow + m_length, m_buffer);
}

template <typename Char>
void FormattedNumber<Char>::WriteInteger(unsigned long long magnitude, bool isNegative)
{
    Char* const end = m_buffer + c_capacity;
    Char* begin = end - CountDigits(magnitude);
    WriteDigits(magnitude, begin, end);
    if (isNegative)
        *--begin = '-';
    m_begin = begin;
    m_length = static_cast<std::size_t>(end - begin);
}

template <typename Char, typename Integer>
std::basic_string<Char> FormatInteger(Integer value)
{
    using Unsigned = std::make_unsigned_t<Integer>;

    const std::size_t signLength = value < 0 ? 1 : 0;
    const auto bits = static_cast<Unsigned>(value);
    const Unsigned magnitude = value < 0 ? 0 - bits : bits;
    std::basic_string<Char> text(signLength + CountDigits(magnitude), '-');
    WriteDigits(magnitude, text.data() + signLength, text.data() + text.size());
    return text;
}

template class FormattedNumber<char>;
template class FormattedNumber<wchar_t>;

template std::string FormatInteger<char>(int);
template std::string FormatInteger<char>(unsigned int);
template std::string FormatInteger<char>(long long);
template std::string FormatInteger<char>(unsigned long long);
template std::wstring FormatInteger<wchar_t>(int);
template std::wstring FormatInteger<wchar_t>(unsigned int);
template std::wstring FormatInteger<wchar_t>(long long);
template std::wstring FormatInteger<wchar_t>(unsigned long long);

} // namespace Toolkit::Base
