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

// Creates the process-wide object of `Class`. If that fails, GetInstance() returns null.
template <typename Class>
void CreatesInstance(Attempt& attempt)
{
    Class::ReleaseInstance();
    attempt.Run([] { Class::CreateInstance(); });
    attempt.Expect(Class::GetInstance().IsValid(), !Class::GetInstance().IsValid());
    Class::CreateInstance();
    attempt.ExpectAlways(Class::GetInstance().IsValid());
    Class::ReleaseInstance();
}

template <typename Class>
void ReleasesInstance(Attempt& attempt)
{
    Class::CreateInstance();
    attempt.Run([] {
        static_cast<void>(Class::GetInstance());
        Class::ReleaseInstance();
        static_cast<void>(Class::GetInstance());
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !Class::GetInstance().IsValid());
}

void QueriesSystem(Attempt& attempt)
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
    attempt.ExpectAlways(system.GetPlatform() != SystemInfo::PlatformUnknown);
}

void ConstructsSystemInfo(Attempt& attempt)
{
    // Constructed outside Run(), because wxPlatformInfo starts a program to find the distribution.
    static const FrameworkHold hold;
    static const wxPlatformInfo platform;
    attempt.Run([] {
        const SystemInfo running;
        const SystemInfo other(platform);
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void StartsProcess(Attempt& attempt)
{
    static const TString<wchar_t> program = L"/bin/true";
    static const TString<wchar_t> arguments = L"\"an argument that is longer than a string\"";
    int process = 0;
    attempt.Run([&] { process = SystemInfo::StartProcess(program, arguments, true); });
    attempt.Expect(process > 0, process == ENOMEM);
}

void GetsFrameworkVersion(Attempt& attempt)
{
    TString<wchar_t> version;
    attempt.Run([&] { version = SystemInfo::GetFrameworkVersion(); });
    attempt.Expect(version.find(L"wxWidgets 3.") == 0, version.empty());
}

void UsesVersion(Attempt& attempt)
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
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

void FormatsVersion(Attempt& attempt)
{
    const Version version(1000000000u, 2000000000u, 3000000000u, 4000000000u);
    TString<wchar_t> text;
    attempt.Run([&] { text = version.ToString(); });
    attempt.Expect(text == L"1000000000.2000000000.3000000000.4000000000", text.empty());
}

void CreatesVersion(Attempt& attempt)
{
    std::unique_ptr<Version> version;
    attempt.Run([&] { version.reset(Version::Create()); });
    attempt.Expect(version != nullptr, version == nullptr);
}

// Forks a child that starts no program: without a PathManager the path is empty, so execv() fails
// and the child exits.
void Restarts(Attempt& attempt)
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

void WaitsForPreviousProcess(Attempt& attempt)
{
    bool hasWaited = true;
    attempt.Run([&] {
        RestartManagment restart;
        hasWaited = restart.WaitingForPreviousProcessFinish() || restart.RestartProcessFinish();
    });
    attempt.ExpectAlways(!hasWaited);
}

void ChecksSingleInstance(Attempt& attempt)
{
    static const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().string());
    PathManager::CreateInstance();
    bool isRunning = true;
    attempt.Run([&] { isRunning = SingleApplicationInstance().IsAlreadyRunning(); });
    attempt.ExpectAlways(!isRunning);
    attempt.ExpectAlways(!SingleApplicationInstance().IsAlreadyRunning());
}

void GetsLockPath(Attempt& attempt)
{
    static const TString<wchar_t> name = L"aratherlongnameofanapplication";
    TString<wchar_t> path;
    attempt.Run([&] { path = SingleApplicationInstance::GetLockPath(name); });
    attempt.Expect(path.find(L"/." + name + L".lock") != std::wstring::npos, path.empty());
}

void TestsNetwork(Attempt& attempt)
{
    static const TString<wchar_t> host = L"127.0.0.1";
    bool isReachable = true;
    attempt.Run([&] { isReachable = Network::TestConnection(host, 1, 100); });
    attempt.ExpectAlways(!isReachable);
}

void GetsTicks(Attempt& attempt)
{
    attempt.Run([] {
        static_cast<void>(GetTickCount());
        const MacAutoreleasePool pool;
        static_cast<void>(MacInitCocoa());
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

// Modules.

class Module : public LibModule {
public:
    void Initialize() override { ++starts; }
    void Release() override { ++stops; }

    int starts = 0;
    int stops = 0;
};

void ConstructsManager(Attempt& attempt)
{
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const LibModuleManager manager;
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

void RegistersModule(Attempt& attempt)
{
    LibModuleManager manager;
    Module module;
    const bool isRegistered = attempt.Run(Rule::BadAlloc, [&] { manager.Register(&module); });
    manager.Initialize(false);
    attempt.ExpectAlways(module.starts == (isRegistered ? 1 : 0));
    manager.Release(false);
}

void UsesModules(Attempt& attempt)
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
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && module.starts == 1 &&
                         module.stops == 1 && other.stops == 1);
}

// Unregisters itself while it is released.
class SelfUnregisteringModule : public LibModule {
public:
    explicit SelfUnregisteringModule(LibModuleManager& manager) : m_manager(manager) {}
    void Initialize() override { ++starts; }
    void Release() override { m_manager.Unregister(this); }

    int starts = 0;

private:
    LibModuleManager& m_manager;
};

void UnregistersModuleWhileReleasing(Attempt& attempt)
{
    LibModuleManager manager;
    SelfUnregisteringModule module(manager);
    manager.Register(&module);
    manager.Initialize(false);
    attempt.Run([&] { manager.Release(false); });
    manager.Initialize(false);
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && module.starts == 1);
    manager.Release(false);
}

void InitializesLibraryModule(Attempt& attempt)
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
    attempt.ExpectAlways(PathManager::GetInstance().IsValid() &&
                         SystemInfo::GetInstance().IsValid());
    module.Release();
}

void ReleasesLibraryModule(Attempt& attempt)
{
    static const TempDir home;
    const ScopedEnvironment environment("HOME", home.Path().string());
    ToolkitModule module;
    module.Initialize();
    attempt.Run([&] { module.Release(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !PathManager::GetInstance().IsValid());
}

void LoadsLibrary(Attempt& attempt)
{
    DllToolkitUnload();
    attempt.Run(Rule::BadAlloc, [] { DllToolkitLoad(); });
    DllToolkitLoad();
    LibModuleManager* const manager = LibModuleManager::GetInstance();
    attempt.ExpectAlways(manager != nullptr);
    // Initialize() creates the Version only if the library's module is registered.
    Version::ReleaseInstance();
    manager->Initialize(false);
    attempt.ExpectAlways(Version::GetInstance().IsValid());
    manager->Release(false);
    attempt.ExpectAlways(!Version::GetInstance().IsValid());
}

void UnloadsLibrary(Attempt& attempt)
{
    attempt.Run([] { DllToolkitUnload(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() &&
                         LibModuleManager::GetInstance() == nullptr);
    DllToolkitLoad();
}

void CreatesRegistry(Attempt& attempt)
{
    DllToolkitUnload();
    attempt.Run(Rule::BadAlloc, [] { LibModuleManager::CreateInstance(); });
    attempt.Expect(LibModuleManager::GetInstance() != nullptr, !LibModuleManager::GetInstance());
    LibModuleManager::CreateInstance();
    attempt.Run([] { LibModuleManager::ReleaseInstance(); });
    attempt.ExpectAlways(!LibModuleManager::GetInstance());
    DllToolkitLoad();
}

} // namespace

std::vector<Operation> SystemOperations()
{
    return {
        {"Toolkit::SystemInfo::SystemInfo", ConstructsSystemInfo},
        {"Toolkit::SystemInfo::SystemInfo", ConstructsSystemInfo},
        {"Toolkit::SystemInfo::GetPlatform", QueriesSystem},
        {"Toolkit::SystemInfo::GetOSMajorVersion", QueriesSystem},
        {"Toolkit::SystemInfo::GetOSMinorVersion", QueriesSystem},
        {"Toolkit::SystemInfo::GetFrameworkVersion", GetsFrameworkVersion},
        {"Toolkit::SystemInfo::HasAdministratorCredentials", QueriesSystem},
        {"Toolkit::SystemInfo::HasPowerUserCredentials", QueriesSystem},
        {"Toolkit::SystemInfo::CanElevateCredentialsUsingUAC", QueriesSystem},
        {"Toolkit::SystemInfo::StartProcess", StartsProcess},
        {"Toolkit::SystemInfo::CreateInstance", CreatesInstance<SystemInfo>},
        {"Toolkit::SystemInfo::GetInstance", ReleasesInstance<SystemInfo>},
        {"Toolkit::SystemInfo::ReleaseInstance", ReleasesInstance<SystemInfo>},
        {"Toolkit::Version::Version", UsesVersion},
        {"Toolkit::Version::Version", UsesVersion},
        {"Toolkit::Version::Version", UsesVersion},
        {"Toolkit::Version::CompareVersion", UsesVersion},
        {"Toolkit::Version::CompareVersion", UsesVersion},
        {"Toolkit::Version::operator==", UsesVersion},
        {"Toolkit::Version::operator<", UsesVersion},
        {"Toolkit::Version::operator>", UsesVersion},
        {"Toolkit::Version::ToString", FormatsVersion},
        {"Toolkit::Version::Create", CreatesVersion},
        {"Toolkit::Version::CreateInstance", CreatesInstance<Version>},
        {"Toolkit::Version::GetInstance", ReleasesInstance<Version>},
        {"Toolkit::Version::ReleaseInstance", ReleasesInstance<Version>},
        {"Toolkit::RestartManagment::RestartManagment", WaitsForPreviousProcess},
        {"Toolkit::RestartManagment::~RestartManagment", WaitsForPreviousProcess},
        {"Toolkit::RestartManagment::ActivateRestartProcess", Restarts},
        {"Toolkit::RestartManagment::WaitingForPreviousProcessFinish", WaitsForPreviousProcess},
        {"Toolkit::RestartManagment::RestartProcessFinish", WaitsForPreviousProcess},
        {"Toolkit::RestartManagment::CreateInstance", CreatesInstance<RestartManagment>},
        {"Toolkit::RestartManagment::GetInstance", ReleasesInstance<RestartManagment>},
        {"Toolkit::RestartManagment::ReleaseInstance", ReleasesInstance<RestartManagment>},
        {"Toolkit::SingleApplicationInstance::SingleApplicationInstance", ChecksSingleInstance},
        {"Toolkit::SingleApplicationInstance::~SingleApplicationInstance", ChecksSingleInstance},
        {"Toolkit::SingleApplicationInstance::IsAlreadyRunning", ChecksSingleInstance},
        {"Toolkit::SingleApplicationInstance::GetLockPath", GetsLockPath},
        {"Toolkit::SingleApplicationInstance::CreateInstance",
         CreatesInstance<SingleApplicationInstance>},
        {"Toolkit::SingleApplicationInstance::GetInstance",
         ReleasesInstance<SingleApplicationInstance>},
        {"Toolkit::SingleApplicationInstance::ReleaseInstance",
         ReleasesInstance<SingleApplicationInstance>},
        {"Toolkit::Network::TestConnection", TestsNetwork},
        {"Toolkit::Network::TestNetwork", TestsNetwork},
        {"Toolkit::GetTickCount", GetsTicks},
        {"MacAutoreleasePool::MacAutoreleasePool", GetsTicks},
        {"MacAutoreleasePool::~MacAutoreleasePool", GetsTicks},
        {"MacInitCocoa", GetsTicks},
        {"Toolkit::LibModule::~LibModule", UsesModules},
        {"Toolkit::LibModuleManager::LibModuleManager", ConstructsManager},
        {"Toolkit::LibModuleManager::~LibModuleManager", ConstructsManager},
        {"Toolkit::LibModuleManager::Register", RegistersModule},
        {"Toolkit::LibModuleManager::Unregister", UnregistersModuleWhileReleasing},
        {"Toolkit::LibModuleManager::Initialize", UsesModules},
        {"Toolkit::LibModuleManager::Release", UsesModules},
        {"Toolkit::LibModuleManager::CreateInstance", CreatesRegistry},
        {"Toolkit::LibModuleManager::GetInstance", UsesModules},
        {"Toolkit::LibModuleManager::ReleaseInstance", CreatesRegistry},
        {"Toolkit::ToolkitModule::ToolkitModule", InitializesLibraryModule},
        {"Toolkit::ToolkitModule::~ToolkitModule", InitializesLibraryModule},
        {"Toolkit::ToolkitModule::Initialize", InitializesLibraryModule},
        {"Toolkit::ToolkitModule::Release", ReleasesLibraryModule},
        {"DllToolkitLoad", LoadsLibrary},
        {"DllToolkitUnload", UnloadsLibrary},
    };
}

} // namespace Toolkit::TestSupport
