#include "toolkit/logging/WxLogForwarder.h"

#include "toolkit/module/LibModuleManager.h"
#include "toolkit/threading/FrameworkHold.h"
#include "toolkit/threading/Thread.h"

#include "support/CapturedLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CapturedLog;

// Exposes the functions that wxWidgets calls.
class ExposedForwarder : public WxLogForwarder {
public:
    using WxLogForwarder::DoLog;
    using WxLogForwarder::DoLogString;
};

class Worker : public Thread {
public:
    explicit Worker(std::function<void()> work) : m_work(std::move(work)) {}
    ~Worker() override { Wait(); }

private:
    int DoWork() override
    {
        m_work();
        return 0;
    }

    std::function<void()> m_work;
};

void RunOnThread(const std::function<void()>& work)
{
    Worker worker(work);
    worker.Run();
}

class WxLogForwarderTest : public testing::Test {
protected:
    const FrameworkHold m_framework;
    CapturedLog m_log;
};

// Matches a forwarded line with any time stamp.
MATCHER_P2(IsForwarded, severity, message, "")
{
    const std::wstring begin = std::to_wstring(severity) + L"  : wx : ";
    const std::wstring end = std::wstring(L" : ") + message;
    const std::wstring line = arg;
    return line.size() > begin.size() + end.size() && line.compare(0, begin.size(), begin) == 0 &&
           line.compare(line.size() - end.size(), end.size(), end) == 0 &&
           line.substr(begin.size(), line.size() - begin.size() - end.size())
                   .find_first_not_of(L"0123456789") == std::wstring::npos;
}

TEST_F(WxLogForwarderTest, WritesNinePiecesPerMessage)
{
    ExposedForwarder forwarder;

    forwarder.DoLog(wxLOG_Warning, L"disk full", 1000);
    EXPECT_THAT(m_log.Pieces(), ElementsAre(L"1", L" ", L" : ", L"wx", L" : ", L"1000", L" : ",
                                            L"disk full", L"\n"));
}

TEST_F(WxLogForwarderTest, MapsLevelsToSeverities)
{
    // The log levels of wxWidgets, whose values are part of its interface.
    constexpr std::pair<unsigned long, const wchar_t*> cases[] = {
        {0, L"0"}, {1, L"0"}, {2, L"1"}, {3, L"2"},   {4, L"2"},    {5, L"3"},
        {6, L"3"}, {7, L"3"}, {8, L"4"}, {100, L"4"}, {12345, L"4"}};
    ExposedForwarder forwarder;
    for (const auto& [level, expected] : cases) {
        SCOPED_TRACE(level);
        m_log.Clear();
        forwarder.DoLog(level, L"text", 7);
        EXPECT_EQ(m_log.Pieces().at(0), expected);
    }
}

TEST_F(WxLogForwarderTest, IgnoresCallsOfDoLogString)
{
    ExposedForwarder forwarder;

    forwarder.DoLogString(L"text", 7);
    EXPECT_THAT(m_log.Pieces(), IsEmpty());
}

TEST_F(WxLogForwarderTest, LetsTheLoggerFilterAMessage)
{
    const CapturedLog warnings(SeverityWarning);
    ExposedForwarder forwarder;

    forwarder.DoLog(wxLOG_Message, L"message", 7);
    forwarder.DoLog(wxLOG_Warning, L"warning", 7);
    EXPECT_THAT(warnings.Lines(), ElementsAre(L"1  : wx : 7 : warning"));
}

TEST_F(WxLogForwarderTest, ForwardsMessagesOfWxWidgets)
{
    const WxLogForwarder forwarder;

    wxLogError("error %d", 1);
    wxLogWarning("warning");
    wxLogMessage("message");
    wxLogGeneric(wxLOG_User + 5, L"custom \u20AC");
    EXPECT_THAT(m_log.Lines(),
                ElementsAre(IsForwarded(0, L"error 1"), IsForwarded(1, L"warning"),
                            IsForwarded(2, L"message"), IsForwarded(4, L"custom \u20AC")));
}

TEST_F(WxLogForwarderTest, WritesTheTimeStampInSeconds)
{
    WxLogForwarder forwarder;
    wxLogRecordInfo info("file", 1, "function", "component");
    info.timestampMS = 1000999;

    forwarder.LogRecord(wxLOG_Warning, "disk full", info);
    EXPECT_THAT(m_log.Lines(), ElementsAre(L"1  : wx : 1000 : disk full"));
}

TEST_F(WxLogForwarderTest, ForwardsMessagesFromToolkitThreadsAtOnce)
{
    const WxLogForwarder forwarder;

    RunOnThread([this] {
        wxLogWarning("from a thread");
        EXPECT_THAT(m_log.Lines(), ElementsAre(IsForwarded(1, L"from a thread")));
    });
}

TEST_F(WxLogForwarderTest, ForwardsASystemErrorOnce)
{
    const WxLogForwarder forwarder;
    const std::wstring text = L"open (error 2: No such file or directory)";

    wxLogSysError(2L, "open");
    RunOnThread([] { wxLogSysError(2L, "open"); });
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsForwarded(0, text), IsForwarded(0, text)));
}

TEST_F(WxLogForwarderTest, ForwardsMessagesFromOtherThreadsAtTheNextFlush)
{
    const WxLogForwarder forwarder;

    std::thread([] { wxLogWarning("from another thread"); }).join();
    EXPECT_THAT(m_log.Lines(), IsEmpty());
    wxLog::FlushActive();
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsForwarded(1, L"from another thread")));
}

TEST_F(WxLogForwarderTest, ForwardsMessagesFromOtherThreadsWhenDestroyed)
{
    std::optional<WxLogForwarder> forwarder(std::in_place);

    std::thread([] { wxLogWarning("from another thread"); }).join();
    forwarder.reset();
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsForwarded(1, L"from another thread")));
}

TEST_F(WxLogForwarderTest, ForwardsMessagesFromThreadsThatLogConcurrently)
{
    const WxLogForwarder forwarder;
    const auto work = [] {
        for (int i = 0; i < 100; ++i)
            wxLogWarning("text");
    };

    {
        Worker first(work);
        Worker second(work);
        first.Run();
        second.Run();
    }
    EXPECT_THAT(m_log.Lines(),
                testing::AllOf(testing::SizeIs(200), testing::Each(IsForwarded(1, L"text"))));
}

TEST_F(WxLogForwarderTest, LeavesThreadMessagesToWxWidgetsWithoutAForwarder)
{
    class Target : public wxLog {
    public:
        std::vector<wxString> messages;

    private:
        void DoLogRecord(wxLogLevel, const wxString& message, const wxLogRecordInfo&) override
        {
            messages.push_back(message);
        }
    };
    Target target;
    wxLog* const old = wxLog::SetActiveTarget(&target);

    RunOnThread([] {
        wxLogWarning("first");
        wxLogWarning("second");
    });
    wxLog::FlushActive();
    wxLog::SetActiveTarget(old);

    EXPECT_THAT(target.messages, ElementsAre("first", "second"));
    EXPECT_THAT(m_log.Lines(), IsEmpty());
}

TEST_F(WxLogForwarderTest, IsReplacedByALaterForwarder)
{
    std::optional<WxLogForwarder> first(std::in_place);
    const WxLogForwarder second;

    RunOnThread([] { wxLogWarning("text"); });
    EXPECT_THAT(m_log.Lines(), ElementsAre(IsForwarded(1, L"text")));
    EXPECT_EQ(wxLog::GetActiveTarget(), &second);
}

TEST_F(WxLogForwarderTest, LeavesNoActiveTargetWhenDestroyed)
{
    class Silent : public wxLog {
        void DoLogText(const wxString&) override {}
    };
    Silent previous;
    wxLog* const old = wxLog::SetActiveTarget(&previous);

    {
        const WxLogForwarder forwarder;
        EXPECT_EQ(wxLog::GetActiveTarget(), &forwarder);
    }
    EXPECT_EQ(wxLog::SetActiveTarget(old), nullptr);
}

TEST(WxLogForwarderReleaseTest, WritesNothingWithoutAProcessLogger)
{
    const FrameworkHold framework;
    testing::internal::CaptureStderr();
    {
        const WxLogForwarder forwarder;
        ASSERT_EQ(ILogger::s_pInstance, nullptr);
        wxLogWarning("nobody listens");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WxLogForwarderReleaseTest, SurvivesTheReleaseOfTheLibrary)
{
    LibModuleManager::GetInstance()->Initialize(true);
    testing::internal::CaptureStderr();
    {
        const WxLogForwarder forwarder;
        LibModuleManager::GetInstance()->Release(true);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(WxLogForwarderReleaseTest, ForwardsAgainAfterTheLibraryIsReinitialized)
{
    for (int i = 0; i < 2; ++i) {
        LibModuleManager::GetInstance()->Initialize(true);
        {
            const CapturedLog log;
            const WxLogForwarder forwarder;
            wxLogWarning("text");
            EXPECT_THAT(log.Lines(), ElementsAre(IsForwarded(1, L"text")));
        }
        LibModuleManager::GetInstance()->Release(true);
    }
}

} // namespace
} // namespace Toolkit
