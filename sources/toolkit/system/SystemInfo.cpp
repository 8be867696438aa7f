#include "toolkit/system/SystemInfo.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/framework/Silence.h"
#include "toolkit/system/ChildProcess.Private.h"

#include <wx/platinfo.h>
#include <wx/utils.h>
#include <wx/version.h>

#include <cerrno>

namespace Toolkit {
namespace {

// Avoids wxPlatformInfo::Get(), which needs an application object and runs several programs to find
// out more than this class reports.
wxPlatformInfo DescribeThisSystem()
{
    const Framework::Silence silence;
    int major = 0;
    int minor = 0;
    wxPlatformInfo description(wxPORT_BASE);
    description.SetOperatingSystemId(wxGetOsVersion(&major, &minor));
    description.SetOSVersion(major, minor);
    return description;
}

} // namespace

smart_ptr<SystemInfo>* SystemInfo::s_pInstance = nullptr;

// The description is created by the first query, not here: wxWidgets runs programs for it, which
// takes longer than the start of a whole application.
SystemInfo::SystemInfo() : m_platform(nullptr) {}

SystemInfo::SystemInfo(const wxPlatformInfo& platform) : m_platform(&platform) {}

const wxPlatformInfo& SystemInfo::Description() const
{
    if (m_platform)
        return *m_platform;
    static const wxPlatformInfo thisSystem = DescribeThisSystem();
    return thisSystem;
}

// Returns a number from the description, or `failure` when out of memory.
template <typename Number>
Number SystemInfo::Query(Number (wxPlatformInfo::*getter)() const, Number failure) const
{
    return Base::TryOr(failure, [&] { return (Description().*getter)(); });
}

SystemInfo::Platform SystemInfo::GetPlatform() const
{
    // Compares exact identifiers: a system that is not listed here belongs to no family.
    switch (static_cast<int>(Query(&wxPlatformInfo::GetOperatingSystemId, wxOS_UNKNOWN))) {
    case wxOS_WINDOWS_9X:
    case wxOS_WINDOWS_NT:
    case wxOS_WINDOWS:
        return PlatformWindows;
    case wxOS_MAC_OS:
    case wxOS_MAC_OSX_DARWIN:
    case wxOS_MAC:
        return PlatformMac;
    case wxOS_UNIX_LINUX:
    case wxOS_UNIX_FREEBSD:
    case wxOS_UNIX_OPENBSD:
    case wxOS_UNIX_NETBSD:
    case wxOS_UNIX_SOLARIS:
    case wxOS_UNIX_AIX:
    case wxOS_UNIX_HPUX:
    case wxOS_UNIX:
        return PlatformUnix;
    default:
        return PlatformUnknown;
    }
}

int SystemInfo::GetOSMajorVersion() const
{
    return Query(&wxPlatformInfo::GetOSMajorVersion, -1);
}

int SystemInfo::GetOSMinorVersion() const
{
    return Query(&wxPlatformInfo::GetOSMinorVersion, -1);
}

TString<wchar_t> SystemInfo::GetFrameworkVersion()
{
    return Base::TryOr({}, [] { return TString<wchar_t>(L"wxWidgets " wxVERSION_NUM_DOT_STRING); });
}

bool SystemInfo::HasAdministratorCredentials()
{
    return false;
}

bool SystemInfo::HasPowerUserCredentials()
{
    return false;
}

bool SystemInfo::CanElevateCredentialsUsingUAC()
{
    return true;
}

int SystemInfo::StartProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments,
                             bool wait)
{
    return Base::TryOr(ENOMEM, [&] { return ChildProcess(path, arguments).Start(wait); });
}

void SystemInfo::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new SystemInfo(); });
}

smart_ptr<SystemInfo> SystemInfo::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void SystemInfo::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

} // namespace Toolkit
