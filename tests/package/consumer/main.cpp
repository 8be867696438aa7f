// Built and run against an installed copy of the library.
#include <cstdio>
#include <cwchar>
#include <toolkit/Toolkit.h>

namespace {

class Worker : public Toolkit::Thread {
public:
    ~Worker() override { Wait(); }

    bool HasRun() const { return m_hasRun; }

protected:
    int DoWork() override
    {
        m_hasRun = true;
        return 0;
    }

private:
    bool m_hasRun = false;
};

// Constructed before main() runs: the library's constants must exist by then.
const TString<wchar_t> s_newline = Toolkit::ILogger::c_strLogToken3;

bool RunWorker()
{
    Worker worker;
    const bool started = worker.Run();
    worker.Wait();
    return started && worker.HasRun();
}

int Fail(const char* what)
{
    std::fprintf(stderr, "failed: %s\n", what);
    return 1;
}

} // namespace

int main()
{
    if (s_newline != L"\n")
        return Fail("a constant is missing before main()");
    Toolkit::LibModuleManager* registry = Toolkit::LibModuleManager::GetInstance();
    if (!registry)
        return Fail("there is no registry when the library is loaded");

    registry->Initialize(true);
    const TString<wchar_t> version = Toolkit::Version::GetInstance()->ToString();
    const bool hasRun = RunWorker();
    registry->Release(true);

    if (!hasRun)
        return Fail("the worker thread has not run");
    std::printf("version %ls\n", version.c_str());
    return 0;
}
