#include "toolkit/files/PathManager.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/Log.h"
#include "toolkit/logging/NullLogger.h"

#include "support/Sanitizers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "logging/LogFile.h"

namespace Toolkit {
namespace {

using namespace std::chrono_literals;

// Ending takes about a second; a busy machine may need longer.
constexpr auto c_longestEnd = 5s;

// Logging does not lock the pointer to the logger. It relies on pointer writes being atomic when
// another thread replaces the logger.
#ifdef TOOLKIT_THREAD_SANITIZER
#define SkipUnderThreadSanitizer() GTEST_SKIP() << "a race by intention"
#else
#define SkipUnderThreadSanitizer() static_cast<void>(0)
#endif

// Logs on two threads until it is destroyed.
class Chatter {
public:
    Chatter()
    {
        for (int i = 0; i < 2; ++i)
            m_threads.emplace_back([this] {
                while (!m_stop)
                    TOOLKIT_LOG(SeverityInfo) << L"still here" << ILogger::c_strLogToken3;
            });
    }
    ~Chatter()
    {
        m_stop = true;
        m_threads.clear();
    }

private:
    std::atomic<bool> m_stop{false};
    std::vector<std::jthread> m_threads;
};

class ProcessLoggerTest : public TestSupport::LogFileTest {
protected:
    ProcessLoggerTest()
    {
        ILogger::CreateInstance();
        ILogger::SetLogger(new FileLogger(SeverityVerbose, Name(), 1 << 20));
    }
    ~ProcessLoggerTest() override { ILogger::ReleaseInstance(); }
};

template <typename Operation>
std::chrono::steady_clock::duration Duration(Operation operation)
{
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::steady_clock::now() - start;
}

TEST_F(ProcessLoggerTest, IsReplacedWhileOthersLog)
{
    SkipUnderThreadSanitizer();
    const Chatter chatter;

    EXPECT_LT(Duration([] { ILogger::SetLogger(new NullLogger()); }), c_longestEnd);
}

TEST_F(ProcessLoggerTest, IsReleasedWhileOthersLog)
{
    SkipUnderThreadSanitizer();
    const Chatter chatter;

    EXPECT_LT(Duration([] { ILogger::ReleaseInstance(); }), c_longestEnd);
    EXPECT_EQ(ILogger::s_pInstance, nullptr);
}

// Records which logger is installed during its own destruction.
class Noting : public ILogger {
public:
    explicit Noting(ILogger*& current) : ILogger(SeverityVerbose), m_current(current) {}
    ~Noting() override { m_current = &GetLogger(); }
    void Write(const TString<wchar_t>&) override {}

private:
    ILogger*& m_current;
};

TEST_F(ProcessLoggerTest, LeavesItsPlaceBeforeItIsDestroyed)
{
    ILogger* current = nullptr;
    ILogger::SetLogger(new Noting(current));
    auto* const next = new Noting(current);
    ILogger::SetLogger(next);
    EXPECT_EQ(current, next);

    ILogger::ReleaseInstance();
    EXPECT_NE(current, nullptr);
    EXPECT_NE(current, next);
}

} // namespace
} // namespace Toolkit
