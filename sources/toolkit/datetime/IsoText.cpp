#include "toolkit/base/Numbers.h"
#include "toolkit/datetime/IsoText.Private.h"

#include <limits>
#include <string>

namespace Toolkit {
namespace {

// Reads like a standard stream in the classic locale: after a failed read it reads nothing more.
class Reader {
public:
    explicit Reader(const std::wstring& text) : m_at(text.data()), m_end(text.data() + text.size())
    {
    }

    // Reads a 32-bit number with an optional sign; returns -1 if there is none or it does not fit.
    long long ReadNumber()
    {
        SkipSpace();
        const bool isNegative = SkipSign();
        const wchar_t* const digits = m_at;
        long long value = 0;
        for (; !AtEnd() && IsDigit(*m_at); ++m_at) {
            // Further digits cannot make the number fit, but could overflow `value`.
            if (value < c_tooLarge)
                value = value * 10 + (*m_at - L'0');
        }
        const long long maxValue = std::numeric_limits<int>::max() + (isNegative ? 1LL : 0LL);
        m_hasFailed = m_hasFailed || m_at == digits || value > maxValue;
        if (m_hasFailed)
            return c_missing;
        return isNegative ? -value : value;
    }

    void SkipCharacter()
    {
        if (AtEnd())
            m_hasFailed = true;
        else
            ++m_at;
    }

    // Returns the next character that is not white space; a space if there is none or a read has
    // failed.
    wchar_t ReadCharacter()
    {
        SkipSpace();
        return m_hasFailed || AtEnd() ? L' ' : *m_at;
    }

private:
    static constexpr long long c_missing = -1;
    static constexpr long long c_tooLarge = 1LL << 40;

    static bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }
    static bool IsSpace(wchar_t character)
    {
        // The first comparison settles most characters.
        return character <= L' ' &&
               (character == L' ' || (character >= L'\t' && character <= L'\r'));
    }

    bool AtEnd() const { return m_at == m_end; }
    void SkipSpace()
    {
        while (!AtEnd() && IsSpace(*m_at))
            ++m_at;
    }

    // Skips a plus or minus sign, if there is one. Returns whether it is a minus.
    bool SkipSign()
    {
        const bool isNegative = !AtEnd() && *m_at == L'-';
        if (isNegative || (!AtEnd() && *m_at == L'+'))
            ++m_at;
        return isNegative;
    }

    const wchar_t* m_at;
    const wchar_t* m_end;
    bool m_hasFailed = false;
};

// Pads with a zero to two characters.
void AppendNumber(std::wstring& out, long long value)
{
    const Base::FormattedNumber<wchar_t> digits(value);
    if (digits.Length() < 2)
        out.push_back(L'0');
    out.append(digits.Data(), digits.Length());
}

} // namespace

void AppendIsoDate(std::wstring& out, const CalendarTime& time)
{
    AppendNumber(out, time.year);
    out.push_back(L'-');
    AppendNumber(out, time.month);
    out.push_back(L'-');
    AppendNumber(out, time.day);
}

void AppendIsoTime(std::wstring& out, const CalendarTime& time)
{
    AppendNumber(out, time.hour);
    out.push_back(L':');
    AppendNumber(out, time.minute);
    out.push_back(L':');
    AppendNumber(out, time.second);
}

ParsedIsoText ParseIsoText(const std::wstring& text)
{
    Reader reader(text);
    ParsedIsoText parsed{};
    long long* const fields[] = {&parsed.time.year, &parsed.time.month,  &parsed.time.day,
                                 &parsed.time.hour, &parsed.time.minute, &parsed.time.second};
    for (long long* const field : fields) {
        *field = reader.ReadNumber();
        reader.SkipCharacter();
    }
    parsed.isUtc = reader.ReadCharacter() == L'Z';
    return parsed;
}

} // namespace Toolkit
