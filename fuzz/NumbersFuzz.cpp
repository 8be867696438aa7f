// Numbers are read as a standard stream with the classic locale reads them, in both character
// widths. The stream reads written integers back, and writes the same string for a double.

#include "toolkit/encoding/StringConvert.h"

#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <locale>
#include <sstream>
#include <string>

namespace {

using namespace Toolkit;

// A stream stores 0 if there is no number; the library must leave the value unchanged.
template <typename Number>
Number ReadByStream(const std::string& text, Number initial)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number value = initial;
    stream >> value;
    return stream.fail() && value == 0 ? initial : value;
}

template <typename Number>
Number CheckReading(bool (*narrow)(const TString<char>&, Number&),
                    bool (*wide)(const TString<wchar_t>&, Number&), const std::string& text)
{
    constexpr Number initial = 77;
    Number narrowValue = initial;
    Number wideValue = initial;
    Require(narrow(text, narrowValue));
    Require(wide(std::wstring(text.begin(), text.end()), wideValue));

    const Number expected = ReadByStream(text, initial);
    Require(narrowValue == expected && wideValue == expected);
    return narrowValue;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);

    const int small = CheckReading<int>(StringConvert::ToInt32, StringConvert::ToInt32, text);
    CheckReading<unsigned int>(StringConvert::ToUint32, StringConvert::ToUint32, text);
    const long long large =
        CheckReading<long long>(StringConvert::ToInt64, StringConvert::ToInt64, text);
    CheckReading<unsigned long long>(StringConvert::ToUint64, StringConvert::ToUint64, text);
    const double real =
        CheckReading<double>(StringConvert::ToDouble, StringConvert::ToDouble, text);

    Require(ReadByStream<int>(StringConvert::StringFromInt32(small), 1) == small);
    Require(ReadByStream<long long>(StringConvert::StringFromInt64(large), 1) == large);
    std::ostringstream written;
    written.imbue(std::locale::classic());
    written << real;
    Require(StringConvert::StringFromDouble(real) == written.str());
    return 0;
}
