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

// Maximum time to destroy a FileLogger. Destroying one takes about half a second; a busy machine
// may need longer.
constexpr auto c_maxEndTime = 5s;

// Threads that log read the pointer to the logger without a lock. Replacing or releasing the logger
// at the same time is a data race, which ThreadSanitizer would report.
#ifdef TOOLKIT_THREAD_SANITIZER
#define SkipUnderThreadSanitizer() GTEST_SKIP() << "an intended data race"
#else
#define SkipUnderThreadSanitizer() static_cast<void>(0)
#endif

// Logs on two threads until it is destroyed.
class LoggingThreads {
public:
    LoggingThreads()
    {
        for (int i = 0; i < 2; ++i)
            m_threads.emplace_back([this] {
                while (!m_stop)
                    TOOLKIT_LOG(SeverityInfo) << L"still here" << ILogger::c_strLogToken3;
            });
    }
    ~LoggingThreads()
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
std::chrono::steady_clock::duration Measure(Operation operation)
{
    const auto start = std::chrono::steady_clock::now();
    operation();
    return std::chrono::steady_clock::now() - start;
}

TEST_F(ProcessLoggerTest, IsReplacedWhileOtherThreadsLog)
{
    SkipUnderThreadSanitizer();
    const LoggingThreads threads;

    EXPECT_LT(Measure([] { ILogger::SetLogger(new NullLogger()); }), c_maxEndTime);
}

TEST_F(ProcessLoggerTest, IsReleasedWhileOtherThreadsLog)
{
    SkipUnderThreadSanitizer();
    const LoggingThreads threads;

    EXPECT_LT(Measure([] { ILogger::ReleaseInstance(); }), c_maxEndTime);
    EXPECT_EQ(ILogger::s_pInstance, nullptr);
}

// Records which logger is installed during its own destruction.
class DestructionObserver : public ILogger {
public:
    explicit DestructionObserver(ILogger*& current) : ILogger(SeverityVerbose), m_current(current)
    {
    }
    ~DestructionObserver() override { m_current = &GetLogger(); }
    void Write(const TString<wchar_t>&) override {}

private:
    ILogger*& m_current;
};

TEST_F(ProcessLoggerTest, IsUninstalledBeforeItIsDestroyed)
{
    ILogger* current = nullptr;
    ILogger::SetLogger(new DestructionObserver(current));
    auto* const next = new DestructionObserver(current);
    ILogger::SetLogger(next);
    EXPECT_EQ(current, next);

    ILogger::ReleaseInstance();
    EXPECT_NE(current, nullptr);
    EXPECT_NE(current, next);
}

} // namespace
} // namespace Toolkit
