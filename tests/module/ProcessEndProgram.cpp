// Creates objects and exits in one of many ways:
//
//     ProcessEndProgram seconds how what [plug-in]
//
// End() lists the values of `how`; any other value returns from main(). `what` names the objects,
// as in ProcessEndScene.h. If a plug-in is given, it creates the objects; if not, the program does.
// The exit status is 7, or 1 if something fails. SIGALRM kills a process that does not end within
// `seconds`. Before quick_exit(), the program sleeps for a tenth of `seconds`, so that the logger's
// thread can write its text: 1 s of 10 s, and more for the slow processes under valgrind.

#include "toolkit/files/DynamicLibrary.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/module/Load.h"
#include "toolkit/threading/Thread.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "ProcessEndScene.h"

using namespace Toolkit;

namespace {

constexpr int c_status = 7;
int s_seconds = 0;
std::unique_ptr<DynamicLibrary> s_plugIn;

class ExitingThread : public Thread {
private:
    int DoWork() override { std::exit(c_status); }
};

smart_ptr<Thread> s_exitingThread;

// Returns the files in HOME and TMPDIR, which only this process uses, with their contents.
std::map<std::string, std::string> ReadFiles()
{
    std::map<std::string, std::string> files;
    for (const char* const directory : {std::getenv("HOME"), std::getenv("TMPDIR")}) {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            std::ifstream file(entry.is_regular_file() ? entry.path() : "/dev/null");
            files[entry.path()] = {std::istreambuf_iterator<char>(file), {}};
        }
    }
    return files;
}

// Returns ReadFiles() once nothing has changed for a second. The log is then complete.
std::map<std::string, std::string> WaitForSettledFiles()
{
    std::map<std::string, std::string> files;
    for (std::map<std::string, std::string> earlier;; earlier.swap(files)) {
        files = ReadFiles();
        if (files == earlier)
            return files;
        ::sleep(1);
    }
}

void Fail(const char* message)
{
    std::fprintf(stderr, "%s\n", message);
    std::_Exit(1);
}

[[noreturn]] void EndChild()
{
    ::alarm(static_cast<unsigned int>(s_seconds));
    std::exit(c_status);
}

// Forks a child that exits. Checks its status, and that it changes none of this process's files.
void ForkAndExit()
{
    const std::map<std::string, std::string> before = WaitForSettledFiles();
    const pid_t child = ::fork();
    if (child == 0)
        EndChild();
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFSIGNALED(status))
        Fail("the child was killed");
    if (WEXITSTATUS(status) != c_status)
        Fail("the child exited with another status");
    if (ReadFiles() != before)
        Fail("the child changed files");
}

void SetUp(const char* what, const char* plugIn)
{
    LibModuleManager::GetInstance()->Initialize(true);
    if (!plugIn) {
        SetUpScene(what);
        return;
    }
    const std::string path = plugIn;
    s_plugIn = std::make_unique<DynamicLibrary>(std::wstring(path.begin(), path.end()));
    void* const symbol = s_plugIn->GetSymbol(L"SetUpScene");
    if (!symbol)
        Fail("cannot load the plug-in");
    reinterpret_cast<void (*)(const char*)>(symbol)(what);
}

int End(const std::string& how)
{
    if (how == "release") {
        LibModuleManager::GetInstance()->Release(true);
    } else if (how == "exit") {
        std::exit(c_status);
    } else if (how == "exit on a thread") {
        s_exitingThread = new ExitingThread();
        s_exitingThread->Run();
        for (;;)
            ::pause();
    } else if (how == "dlclose") {
        s_plugIn.reset();
    } else if (how == "dlclose and release") {
        s_plugIn.reset();
        LibModuleManager::GetInstance()->Release(true);
    } else if (how == "unload") {
        DllToolkitUnload();
    } else if (how == "fork") {
        ForkAndExit();
        LibModuleManager::GetInstance()->Release(true);
    } else if (how == "fork and return") {
        ForkAndExit();
    } else if (how == "quick_exit") {
        ::sleep(static_cast<unsigned int>(s_seconds / 10));
        std::quick_exit(c_status);
    } else if (how == "SIGTERM") {
        std::raise(SIGTERM);
    }
    return c_status;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4)
        return 1;
    s_seconds = std::atoi(argv[1]);
    ::alarm(static_cast<unsigned int>(s_seconds));
    SetUp(argv[3], argc > 4 ? argv[4] : nullptr);
    return End(argv[2]);
}
