#include "toolkit/system/Version.h"

#include "toolkit/base/Numbers.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace Toolkit {
namespace {

// The build system defines TOOLKIT_VERSION.
constexpr const wchar_t* c_libraryVersion = L"" TOOLKIT_VERSION;

constexpr wchar_t c_separator = L'.';

} // namespace

smart_ptr<Version>* Version::s_pInstance = nullptr;

Version::Version() : Version(0, 0, 0, 0) {}

Version::Version(unsigned int major, unsigned int minor, unsigned int build, unsigned int revision)
    : m_major(major), m_minor(minor), m_build(build), m_revision(revision)
{
}

Version::Version(const TString<wchar_t>& text) : Version()
{
    // Copies nothing, so that comparing with a string needs no memory.
    std::wstring_view rest = text;
    for (unsigned int* const part : {&m_major, &m_minor, &m_build, &m_revision}) {
        rest.remove_prefix(std::min(rest.find_first_not_of(c_separator), rest.size()));
        const std::wstring_view token = rest.substr(0, rest.find(c_separator));
        Base::ParseNumber<wchar_t>(token, *part);
        rest.remove_prefix(token.size());
    }
}

TString<wchar_t> Version::ToString() const
{
    return Base::TryOr({}, [this] {
        std::wstring text = Base::FormatInteger<wchar_t>(m_major);
        for (const unsigned int part : {m_minor, m_build, m_revision})
            text.append(1, c_separator).append(Base::FormatInteger<wchar_t>(part));
        return TString<wchar_t>(std::move(text));
    });
}

bool Version::operator==(const Version& other) const
{
    return CompareVersion(other) == 0;
}

bool Version::operator<(const Version& other) const
{
    return CompareVersion(other) < 0;
}

bool Version::operator>(const Version& other) const
{
    return CompareVersion(other) > 0;
}

int Version::CompareVersion(const Version& other) const
{
    const auto own = std::tie(m_major, m_minor, m_build, m_revision);
    const auto others = std::tie(other.m_major, other.m_minor, other.m_build, other.m_revision);
    if (own == others)
        return 0;
    return own > others ? 1 : -1;
}

int Version::CompareVersion(const TString<wchar_t>& text) const
{
    return CompareVersion(Version(text));
}

Version* Version::Create()
{
    return Base::TryOr(nullptr, [] { return new Version(c_libraryVersion); });
}

void Version::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new Version(c_libraryVersion); });
}

smart_ptr<Version> Version::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void Version::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

} // namespace Toolkit
