#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Parses and formats numbers as the standard streams do in the classic locale, whatever the global
// C++ locale is: decimal, no grouping.
namespace Toolkit::Base {

/// Reads the number at the beginning of `text`, after any white space. If there is none, `value` is
/// unchanged. A number out of range yields the nearest limit of the type. A negative number wraps
/// around in an unsigned type, so that "-1" yields the maximum; if its magnitude is out of range,
/// it yields the maximum, too. For a double, an exponent without digits makes the number invalid:
/// "1e" leaves `value` unchanged.
///
/// Defined for char and wchar_t, and for the types int, unsigned int, long long, unsigned long long
/// and double. Only reading a double may throw `std::bad_alloc`.
template <typename Char, typename Number>
void ParseNumber(std::basic_string_view<Char> text, Number& value);

/// A number formatted as a string, which is stored in the object.
///
/// Integers are plain digits, after a minus sign if negative. Floating-point numbers are formatted
/// like printf's "%g": at most six significant digits.
template <typename Char>
class FormattedNumber {
public:
    explicit FormattedNumber(long long value);
    explicit FormattedNumber(unsigned long long value);
    explicit FormattedNumber(double value);

    FormattedNumber(const FormattedNumber&) = delete;
    FormattedNumber& operator=(const FormattedNumber&) = delete;

    const Char* Data() const { return m_begin; }
    std::size_t Length() const { return m_length; }
    std::basic_string<Char> String() const { return {m_begin, m_length}; }

private:
    void WriteInteger(unsigned long long magnitude, bool isNegative);

    // Enough for 18446744073709551615, -9223372036854775808 and "-1.23457e-308".
    static constexpr std::size_t c_capacity = 24;

    Char m_buffer[c_capacity];
    const Char* m_begin;
    std::size_t m_length;
};

/// Formats an integer as `FormattedNumber` does, directly into the returned string.
///
/// Defined for char and wchar_t, and for the integers that ParseNumber() reads.
template <typename Char, typename Integer>
std::basic_string<Char> FormatInteger(Integer value);

} // namespace Toolkit::Base
