#include "toolkit/logging/ILogger.h"

#include "toolkit/base/Numbers.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"

#include <cstring>
#include <string>
#include <type_traits>

namespace Toolkit {
namespace {

TString<wchar_t> WidenBytes(const char* text)
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    return std::wstring(bytes, bytes + std::strlen(text));
}

} // namespace

ILogger::ILogger(LogSeverity threshold) : m_threshold(threshold), m_severity(SeverityVerbose) {}

ILogger::~ILogger() = default;

// Writes the result of `convert`, unless it is filtered out. Standard exceptions are dropped along
// with the text: logging must not make the surrounding operation fail.
template <typename Convert>
ILogger& ILogger::Insert(Convert convert)
{
    if (!IsFilteredOut())
        static_cast<void>(Base::RunsWithoutThrowing([&] { Write(convert()); }));
    return GetLogger();
}

template <typename Number>
ILogger& ILogger::WriteNumber(Number value)
{
    using Integer = std::conditional_t<std::is_unsigned_v<Number>, unsigned long long, long long>;
    using Widest = std::conditional_t<std::is_floating_point_v<Number>, double, Integer>;

    return Insert(
        [value] { return Base::FormattedNumber<wchar_t>(static_cast<Widest>(value)).String(); });
}

ILogger& ILogger::operator<<(const SetSeverity& severity)
{
    // Relaxed is enough, as in IsFilteredOut(): the severity orders no other memory accesses.
    m_severity.store(severity.GetSeverity(), std::memory_order_relaxed);
    return GetLogger();
}

ILogger& ILogger::operator<<(const TString<wchar_t>& text)
{
    return Insert([&]() -> const TString<wchar_t>& { return text; });
}

ILogger& ILogger::operator<<(const TString<char>& text)
{
    return Insert([&] { return Base::DecodeUtf8(text); });
}

ILogger& ILogger::operator<<(const wchar_t* text)
{
    return Insert([text] { return TString<wchar_t>(text); });
}

ILogger& ILogger::operator<<(const char* text)
{
    return Insert([text] { return text ? WidenBytes(text) : TString<wchar_t>(); });
}

ILogger& ILogger::WriteView(std::wstring_view text)
{
    return Insert([text] { return std::wstring(text); });
}

ILogger& ILogger::WriteView(std::string_view text)
{
    return Insert([text] { return Base::DecodeUtf8(std::string(text)); });
}

ILogger& ILogger::operator<<(long long value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(int value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(short value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(unsigned long long value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(unsigned int value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(unsigned short value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(long value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(unsigned long value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(double value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(float value)
{
    return WriteNumber(value);
}

ILogger& ILogger::operator<<(LogSeverity value)
{
    return WriteNumber(static_cast<int>(value));
}

ILogger& ILogger::operator<<(bool value)
{
    return WriteNumber(static_cast<int>(value));
}

} // namespace Toolkit
