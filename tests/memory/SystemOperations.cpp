#include "toolkit/files/PathManager.h"
#include "toolkit/module/LibModule.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/module/Load.h"
#include "toolkit/module/ToolkitModule.h"
#include "toolkit/system/MacCocoa.h"
#include "toolkit/system/Network.h"
#include "toolkit/system/RestartManagment.h"
#include "toolkit/system/SingleApplicationInstance.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/system/TickCount.h"
#include "toolkit/system/Version.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/CapturedLog.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <wx/platinfo.h>

#include <cerrno>
#include <memory>
#include <sys/wait.h>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

// Creates the process-wide object of a class; if that fails, there is none.
template <typename Class>
void Created(Attempt& attempt)
{
    Class::ReleaseInstance();
    attempt.Run([] { Class::CreateInstance(); });
    attempt.Expect(Class::GetInstance().IsValid(), !Class::GetInstance().IsValid());
    Class::CreateInstance();
    attempt.Always(Class::GetInstance().IsValid());
    Class::ReleaseInstance();
}

template <typename Class>
void Released(Attempt& attempt)
{
    Class::CreateInstance();
    attempt.Run([] {
        static_cast<void>(Class::GetInstance());
        Class::ReleaseInstance();
        static_cast<void>(Class::GetInstance());
    });
    attempt.Always(!attempt.HasFailed() && !Class::GetInstance().IsValid());
}

void SystemAsked(Attempt& attempt)
{
    const SystemInfo system;
    int platform = 0;
    int major = 0;
    int minor = 0;
    attempt.Run([&] {
        platform = system.GetPlatform();
        major = system.GetOSMajorVersion();
        minor = system.GetOSMinorVersion();
        static_cast<void>(SystemInfo::HasAdministratorCredentials());
        static_cast<void>(SystemInfo::HasPowerUserCredentials());
        static_cast<void>(SystemInfo::CanElevateCredentialsUsingUAC());
    });
    attempt.Expect(platform != SystemInfo::PlatformUnknown && major > 0 && minor >= 0,
                   platform == SystemInfo::PlatformUnknown || major == -1 || minor == -1);
    attempt.Always(system.GetPlatform() != SystemInfo::PlatformUnknown);
}

void SystemMade(Attempt& attempt)
{
    // wxPlatformInfo starts a program to find the distribution.
    static const FrameworkHold hold;
    static const wxPlatformInfo platform;
    attempt.Run([] {
        const SystemInfo running;
        const SystemInfo other(platform);
    });
    attempt.Always(!attempt.HasFailed());
}

void ProcessStarted(Attempt& attempt)
{
    static const TString<wchar_t> program = L"/bin/true";
    static const TString<wchar_t> arguments = L"\"an argument that is longer than a string\"";
    int process = 0;
    attempt.Run([&] { process = SystemInfo::StartProcess(program, arguments, true); });
    attempt.Expect(process > 0, process == ENOMEM);
}

void FrameworkAsked(Attempt& attempt)
{
    TString<wchar_t> version;
    attempt.Run([&] { version = SystemInfo::GetFrameworkVersion(); });
    attempt.Expect(version.find(L"wxWidgets 3.") == 0, version.empty());
}

void VersionUsed(Attempt& attempt)
{
    static const TString<wchar_t> text = L"1000000000.2000000000.3000000000.4000000000";
    bool isRight = false;
    attempt.Run([&] {
        const Version version(text);
        const Version same(1000000000u, 2000000000u, 3000000000u, 4000000000u);
        const Version none;
        isRight = version == same && version > none && none < version &&
                  version.CompareVersion(text) == 0 && version.CompareVersion(none) == 1;
    });
    attempt.Always(!attempt.HasFailed() && isRight);
}

void VersionWritten(Attempt& attempt)
{
    const Version version(1000000000u, 2000000000u, 3000000000u, 4000000000u);
    TString<wchar_t> text;
    attempt.Run([&] { text = version.ToString(); });
    attempt.Expect(text == L"1000000000.2000000000.3000000000.4000000000", text.empty());
}

void VersionMade(Attempt& attempt)
{
    std::unique_ptr<Version> version;
    attempt.Run([&] { version.reset(Version::Create()); });
    attempt.Expect(version != nullptr, version == nullptr);
}

// Starts a copy of this program, which exits immediately.
void Restarted(Attempt& attempt)
{
    PathManager::ReleaseInstance();
    RestartManagment restart;
    bool isActivated = false;
    attempt.Run([&] { isActivated = restart.ActivateRestartProcess(); });
    attempt.Expect(isActivated, true);
    while (::waitpid(-1, nullptr, 0) > 0) {
    }
    PathManager::CreateInstance();
}

void RestartAsked(Attempt& attempt)
{
    bool isWaited = true;
    attempt.Run([&] {
        RestartManagment restart;
        isWaited = restart.WaitingForPreviousProcessFinish() || restart.RestartProcessFinish();
    });
    attempt.Always(!isWaited);
}

void InstanceMade(Attempt& attempt)
{
    static const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().string());
    PathManager::CreateInstance();
    bool isRunning = true;
    attempt.Run([&] { isRunning = SingleApplicationInstance().IsAlreadyRunning(); });
    attempt.Always(!isRunning);
    attempt.Always(!SingleApplicationInstance().IsAlreadyRunning());
}

void LockNamed(Attempt& attempt)
{
    static const TString<wchar_t> name = L"aratherlongnameofanapplication";
    TString<wchar_t> path;
    attempt.Run([&] { path = SingleApplicationInstance::GetLockPath(name); });
    attempt.Expect(path.find(L"/." + name + L".lock") != std::wstring::npos, path.empty());
}

void NetworkTested(Attempt& attempt)
{
    static const TString<wchar_t> host = L"127.0.0.1";
    bool isThere = true;
    attempt.Run([&] { isThere = Network::TestConnection(host, 1, 100); });
    attempt.Always(!isThere);
}

void Ticks(Attempt& attempt)
{
    attempt.Run([] {
        static_cast<void>(GetTickCount());
        const MacAutoreleasePool pool;
        static_cast<void>(MacInitCocoa());
    });
    attempt.Always(!attempt.HasFailed());
}

// Modules.

class Module : public LibModule {
public:
    void Initialize() override { ++starts; }
    void Release() override { ++stops; }

    int starts = 0;
    int stops = 0;
};

void ManagerMade(Attempt& attempt)
{
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const LibModuleManager manager;
            isMade = true;
        }))
        attempt.Expect(isMade);
}

void ModuleRegistered(Attempt& attempt)
{
    LibModuleManager manager;
    Module module;
    const bool isRegistered = attempt.Run(Rule::BadAlloc, [&] { manager.Register(&module); });
    manager.Initialize(false);
    attempt.Always(module.starts == (isRegistered ? 1 : 0));
    manager.Release(false);
}

void ModulesUsed(Attempt& attempt)
{
    LibModuleManager manager;
    Module module;
    Module other;
    manager.Register(&module);
    manager.Register(&other);
    attempt.Run([&] {
        manager.Initialize(false);
        manager.Unregister(&other);
        manager.Release(false);
        static_cast<void>(LibModuleManager::GetInstance());
        LibModuleManager::CreateInstance();
    });
    attempt.Always(!attempt.HasFailed() && module.starts == 1 && module.stops == 1 &&
                   other.stops == 1);
}

// Unregisters itself while it is released.
class Leaver : public LibModule {
public:
    explicit Leaver(LibModuleManager& manager) : m_manager(manager) {}
    void Initialize() override { ++starts; }
    void Release() override { m_manager.Unregister(this); }

    int starts = 0;

private:
    LibModuleManager& m_manager;
};

void ModuleUnregisteredWhileReleased(Attempt& attempt)
{
    LibModuleManager manager;
    Leaver module(manager);
    manager.Register(&module);
    manager.Initialize(false);
    attempt.Run([&] { manager.Release(false); });
    manager.Initialize(false);
    attempt.Always(!attempt.HasFailed() && module.starts == 1);
    manager.Release(false);
}

void LibraryModule(Attempt& attempt)
{
    static const FrameworkHold hold;
    static const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().string());
    PathManager::ReleaseInstance();
    attempt.Run([] {
        ToolkitModule module;
        module.Initialize();
    });
    ToolkitModule module;
    module.Initialize();
    attempt.Always(PathManager::GetInstance().IsValid() && SystemInfo::GetInstance().IsValid());
    module.Release();
}

void LibraryModuleReleased(Attempt& attempt)
{
    static const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().string());
    ToolkitModule module;
    module.Initialize();
    attempt.Run([&] { module.Release(); });
    attempt.Always(!attempt.HasFailed() && !PathManager::GetInstance().IsValid());
}

void Loaded(Attempt& attempt)
{
    DllToolkitUnload();
    attempt.Run(Rule::BadAlloc, [] { DllToolkitLoad(); });
    DllToolkitLoad();
    LibModuleManager* const manager = LibModuleManager::GetInstance();
    attempt.Always(manager != nullptr);
    // Initialize() works, so the library's module is registered.
    Version::ReleaseInstance();
    manager->Initialize(false);
    attempt.Always(Version::GetInstance().IsValid());
    manager->Release(false);
    attempt.Always(!Version::GetInstance().IsValid());
}

void Unloaded(Attempt& attempt)
{
    attempt.Run([] { DllToolkitUnload(); });
    attempt.Always(!attempt.HasFailed() && LibModuleManager::GetInstance() == nullptr);
    DllToolkitLoad();
}

void RegistryMade(Attempt& attempt)
{
    DllToolkitUnload();
    attempt.Run(Rule::BadAlloc, [] { LibModuleManager::CreateInstance(); });
    attempt.Expect(LibModuleManager::GetInstance() != nullptr, !LibModuleManager::GetInstance());
    LibModuleManager::CreateInstance();
    attempt.Run([] { LibModuleManager::ReleaseInstance(); });
    attempt.Always(!LibModuleManager::GetInstance());
    DllToolkitLoad();
}

} // namespace

std::vector<Operation> SystemOperations()
{
    return {
        {"Toolkit::SystemInfo::SystemInfo", SystemMade},
        {"Toolkit::SystemInfo::SystemInfo", SystemMade},
        {"Toolkit::SystemInfo::GetPlatform", SystemAsked},
        {"Toolkit::SystemInfo::GetOSMajorVersion", SystemAsked},
        {"Toolkit::SystemInfo::GetOSMinorVersion", SystemAsked},
        {"Toolkit::SystemInfo::GetFrameworkVersion", FrameworkAsked},
        {"Toolkit::SystemInfo::HasAdministratorCredentials", SystemAsked},
        {"Toolkit::SystemInfo::HasPowerUserCredentials", SystemAsked},
        {"Toolkit::SystemInfo::CanElevateCredentialsUsingUAC", SystemAsked},
        {"Toolkit::SystemInfo::StartProcess", ProcessStarted},
        {"Toolkit::SystemInfo::CreateInstance", Created<SystemInfo>},
        {"Toolkit::SystemInfo::GetInstance", Released<SystemInfo>},
        {"Toolkit::SystemInfo::ReleaseInstance", Released<SystemInfo>},
        {"Toolkit::Version::Version", VersionUsed},
        {"Toolkit::Version::Version", VersionUsed},
        {"Toolkit::Version::Version", VersionUsed},
        {"Toolkit::Version::CompareVersion", VersionUsed},
        {"Toolkit::Version::CompareVersion", VersionUsed},
        {"Toolkit::Version::operator==", VersionUsed},
        {"Toolkit::Version::operator<", VersionUsed},
        {"Toolkit::Version::operator>", VersionUsed},
        {"Toolkit::Version::ToString", VersionWritten},
        {"Toolkit::Version::Create", VersionMade},
        {"Toolkit::Version::CreateInstance", Created<Version>},
        {"Toolkit::Version::GetInstance", Released<Version>},
        {"Toolkit::Version::ReleaseInstance", Released<Version>},
        {"Toolkit::RestartManagment::RestartManagment", RestartAsked},
        {"Toolkit::RestartManagment::~RestartManagment", RestartAsked},
        {"Toolkit::RestartManagment::ActivateRestartProcess", Restarted},
        {"Toolkit::RestartManagment::WaitingForPreviousProcessFinish", RestartAsked},
        {"Toolkit::RestartManagment::RestartProcessFinish", RestartAsked},
        {"Toolkit::RestartManagment::CreateInstance", Created<RestartManagment>},
        {"Toolkit::RestartManagment::GetInstance", Released<RestartManagment>},
        {"Toolkit::RestartManagment::ReleaseInstance", Released<RestartManagment>},
        {"Toolkit::SingleApplicationInstance::SingleApplicationInstance", InstanceMade},
        {"Toolkit::SingleApplicationInstance::~SingleApplicationInstance", InstanceMade},
        {"Toolkit::SingleApplicationInstance::IsAlreadyRunning", InstanceMade},
        {"Toolkit::SingleApplicationInstance::GetLockPath", LockNamed},
        {"Toolkit::SingleApplicationInstance::CreateInstance", Created<SingleApplicationInstance>},
        {"Toolkit::SingleApplicationInstance::GetInstance", Released<SingleApplicationInstance>},
        {"Toolkit::SingleApplicationInstance::ReleaseInstance",
         Released<SingleApplicationInstance>},
        {"Toolkit::Network::TestConnection", NetworkTested},
        {"Toolkit::Network::TestNetwork", NetworkTested},
        {"Toolkit::GetTickCount", Ticks},
        {"MacAutoreleasePool::MacAutoreleasePool", Ticks},
        {"MacAutoreleasePool::~MacAutoreleasePool", Ticks},
        {"MacInitCocoa", Ticks},
        {"Toolkit::LibModule::~LibModule", ModulesUsed},
        {"Toolkit::LibModuleManager::LibModuleManager", ManagerMade},
        {"Toolkit::LibModuleManager::~LibModuleManager", ManagerMade},
        {"Toolkit::LibModuleManager::Register", ModuleRegistered},
        {"Toolkit::LibModuleManager::Unregister", ModuleUnregisteredWhileReleased},
        {"Toolkit::LibModuleManager::Initialize", ModulesUsed},
        {"Toolkit::LibModuleManager::Release", ModulesUsed},
        {"Toolkit::LibModuleManager::CreateInstance", RegistryMade},
        {"Toolkit::LibModuleManager::GetInstance", ModulesUsed},
        {"Toolkit::LibModuleManager::ReleaseInstance", RegistryMade},
        {"Toolkit::ToolkitModule::ToolkitModule", LibraryModule},
        {"Toolkit::ToolkitModule::~ToolkitModule", LibraryModule},
        {"Toolkit::ToolkitModule::Initialize", LibraryModule},
        {"Toolkit::ToolkitModule::Release", LibraryModuleReleased},
        {"DllToolkitLoad", Loaded},
        {"DllToolkitUnload", Unloaded},
    };
}

} // namespace Toolkit::TestSupport
