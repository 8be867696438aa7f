#include "toolkit/system/Version.h"

#include "toolkit/base/Singleton.h"
#include "toolkit/encoding/StringConvert.h"

#include <tuple>
#include <vector>

namespace Toolkit {
namespace {

constexpr const wchar_t* c_libraryVersion = L"1.0.332.3";

} // namespace

smart_ptr<Version>* Version::s_pInstance = nullptr;

Version::Version() : Version(0, 0, 0, 0) {}

Version::Version(unsigned int major, unsigned int minor, unsigned int build, unsigned int revision)
    : m_major(major), m_minor(minor), m_build(build), m_revision(revision)
{
}

Version::Version(const TString<wchar_t>& text) : Version()
{
    std::vector<TString<wchar_t>> tokens;
    text.GetTokens(L".", tokens, true);
    unsigned int* const parts[] = {&m_major, &m_minor, &m_build, &m_revision};
    std::size_t next = 0;
    for (unsigned int* const part : parts) {
        if (next < tokens.size())
            *part = tokens[next++].ToUint32();
    }
}

TString<wchar_t> Version::ToString() const
{
    const TString<wchar_t> point = L'.';
    return StringConvert::UStringFromUint32(m_major) + point +
           StringConvert::UStringFromUint32(m_minor) + point +
           StringConvert::UStringFromUint32(m_build) + point +
           StringConvert::UStringFromUint32(m_revision);
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
    return new Version(c_libraryVersion);
}

void Version::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, Create);
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
