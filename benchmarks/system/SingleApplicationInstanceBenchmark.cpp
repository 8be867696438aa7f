// Measures the whole check for another running instance of the application.

#include "toolkit/files/PathManager.h"
#include "toolkit/system/SingleApplicationInstance.h"

#include <benchmark/benchmark.h>
#include <wx/init.h>
#include <wx/snglinst.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace Toolkit;

// A home directory, in which the check creates its files. It is in the directory of this program,
// not in the temporary directory: home directories are on a disk, and the temporary directory may
// be in memory, where fsync() takes no time.
class Home {
public:
    Home()
    {
        const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
        std::string name = program.parent_path() / "home-XXXXXX";
        if (!::mkdtemp(name.data()))
            std::abort();
        m_path = name;
        ::setenv("HOME", name.c_str(), 1);
    }
    ~Home() { std::filesystem::remove_all(m_path); }

    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

private:
    std::filesystem::path m_path;
};

void BM_InstanceCheck_Toolkit(benchmark::State& state)
{
    const wxInitializer wxWidgets;
    const Home home;
    PathManager::CreateInstance();
    bool isOnlyInstance = true;
    for (auto _ : state) {
        SingleApplicationInstance::CreateInstance();
        isOnlyInstance &= !SingleApplicationInstance::GetInstance()->IsAlreadyRunning();
        SingleApplicationInstance::ReleaseInstance();
    }
    PathManager::ReleaseInstance();
    if (!isOnlyInstance)
        state.SkipWithError("another instance is running");
}
BENCHMARK(BM_InstanceCheck_Toolkit);

void BM_InstanceCheck_wxSingleInstanceChecker(benchmark::State& state)
{
    const wxInitializer wxWidgets;
    const Home home;
    bool isOnlyInstance = true;
    for (auto _ : state) {
        wxSingleInstanceChecker checker;
        isOnlyInstance &= checker.Create(".instance") && !checker.IsAnotherRunning();
    }
    if (!isOnlyInstance)
        state.SkipWithError("another instance is running");
}
BENCHMARK(BM_InstanceCheck_wxSingleInstanceChecker);

} // namespace
