#include "toolkit/encoding/StringConvert.h"

#include "toolkit/base/Numbers.h"
#include "toolkit/base/OutOfMemory.h"

#include <algorithm>
#include <string>
#include <type_traits>

namespace Toolkit {
namespace {

// Always returns true, even if `text` contains no number.
template <typename Char, typename Number>
bool Parse(const TString<Char>& text, Number& value)
{
    static_cast<void>(Base::RunsWithoutThrowing([&] { Base::ParseNumber<Char>(text, value); }));
    return true;
}

// Returns an empty string when out of memory.
template <typename Char, typename Number>
TString<Char> ToText(Number value)
{
    return Base::TryOr({}, [value]() -> TString<Char> {
        if constexpr (std::is_floating_point_v<Number>)
            return Base::FormattedNumber<Char>(value).String();
        else
            return Base::FormatInteger<Char>(value);
    });
}

} // namespace

bool StringConvert::ToInt32(const TString<char>& text, int& value)
{
    return Parse(text, value);
}

bool StringConvert::ToInt32(const TString<wchar_t>& text, int& value)
{
    return Parse(text, value);
}

bool StringConvert::ToUint32(const TString<char>& text, unsigned int& value)
{
    return Parse(text, value);
}

bool StringConvert::ToUint32(const TString<wchar_t>& text, unsigned int& value)
{
    return Parse(text, value);
}

bool StringConvert::ToInt64(const TString<char>& text, long long& value)
{
    return Parse(text, value);
}

bool StringConvert::ToInt64(const TString<wchar_t>& text, long long& value)
{
    return Parse(text, value);
}

bool StringConvert::ToUint64(const TString<char>& text, unsigned long long& value)
{
    return Parse(text, value);
}

bool StringConvert::ToUint64(const TString<wchar_t>& text, unsigned long long& value)
{
    return Parse(text, value);
}

bool StringConvert::ToDouble(const TString<char>& text, double& value)
{
    return Parse(text, value);
}

bool StringConvert::ToDouble(const TString<wchar_t>& text, double& value)
{
    return Parse(text, value);
}

TString<wchar_t> StringConvert::UStringFromInt32(int value)
{
    return ToText<wchar_t>(value);
}

TString<wchar_t> StringConvert::UStringFromUint32(unsigned int value)
{
    return ToText<wchar_t>(value);
}

TString<wchar_t> StringConvert::UStringFromInt64(long long value)
{
    return ToText<wchar_t>(value);
}

TString<wchar_t> StringConvert::UStringFromUInt64(unsigned long long value)
{
    return ToText<wchar_t>(value);
}

TString<wchar_t> StringConvert::UStringFromDouble(double value)
{
    return ToText<wchar_t>(value);
}

TString<char> StringConvert::StringFromInt32(int value)
{
    return ToText<char>(value);
}

TString<char> StringConvert::StringFromUint32(unsigned int value)
{
    return ToText<char>(value);
}

TString<char> StringConvert::StringFromInt64(long long value)
{
    return ToText<char>(value);
}

TString<char> StringConvert::StringFromUInt64(unsigned long long value)
{
    return ToText<char>(value);
}

TString<char> StringConvert::StringFromDouble(double value)
{
    return ToText<char>(value);
}

TString<wchar_t> StringConvert::GetCharactersFromRight(const TString<wchar_t>& text,
                                                       unsigned int count)
{
    return Base::TryOr({}, [&] {
        std::wstring collected;
        for (auto at = text.rbegin(); at != text.rend() && count > 0; ++at) {
            if (*at == L' ')
                continue;
            collected.push_back(*at);
            --count;
        }
        std::reverse(collected.begin(), collected.end());
        return TString<wchar_t>(collected.c_str());
    });
}

} // namespace Toolkit
