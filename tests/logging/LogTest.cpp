#include "toolkit/logging/Log.h"

#include "toolkit/system/TickCount.h"

#include "support/CapturedLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CapturedLog;
using TestSupport::IsLogLine;

void Report(LogSeverity severity)
{
    TOOLKIT_LOG_AT_LINE(severity, 64)
        << L"Unable to open file : " << TString<wchar_t>(L"x.ini") << ILogger::c_strLogToken3;
}

TEST(LogTest, WritesElevenPiecesPerLine)
{
    const CapturedLog log;

    const unsigned int before = GetTickCount();
    Report(SeverityError);
    const unsigned int after = GetTickCount();

    const std::vector<std::wstring> pieces = log.Pieces();
    ASSERT_EQ(pieces.size(), 11u);
    EXPECT_THAT(pieces, ElementsAre(L"0", L" ", testing::_, L" : ", L"64", L" : ", L"Report",
                                    L" : ", L"Unable to open file : ", L"x.ini", L"\n"));
    const unsigned long ticks = std::stoul(pieces[2]);
    EXPECT_EQ(pieces[2], std::to_wstring(ticks));
    EXPECT_GE(ticks, before);
    EXPECT_LE(ticks, after);
}

TEST(LogTest, WritesTheSeverityOfALine)
{
    const CapturedLog log;

    for (const LogSeverity severity :
         {SeverityError, SeverityWarning, SeverityInfo, SeverityDebug, SeverityVerbose}) {
        SCOPED_TRACE(severity);
        Report(severity);
        EXPECT_THAT(log.Lines().back(),
                    IsLogLine(severity, 64, L"Report", L"Unable to open file : x.ini"));
    }
}

TEST(LogTest, WritesTheSourceLocation)
{
    const CapturedLog log;

    const int line = __LINE__ + 1;
    TOOLKIT_LOG(SeverityInfo) << L"here" << ILogger::c_strLogToken3;

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityInfo, line, L"TestBody", L"here")));
}

TEST(LogTest, OmitsALineLessSevereThanTheThreshold)
{
    const CapturedLog log(SeverityWarning);

    Report(SeverityInfo);
    Report(SeverityWarning);
    Report(SeverityDebug);

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityWarning, 64, L"Report",
                                                   L"Unable to open file : x.ini")));
}

TEST(LogTest, AcceptsValuesOfDifferentTypes)
{
    const CapturedLog log;

    TOOLKIT_LOG(SeverityInfo) << L"a" << 1 << "b" << -2L << TString<char>("c") << true << 3ULL
                              << ILogger::c_strLogToken3;

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityInfo, L"TestBody", L"a1b-2c13")));
}

TEST(LogTest, CompilesInABranchWithoutBraces)
{
    const CapturedLog log;

    for (const bool condition : {true, false}) {
        if (condition)
            TOOLKIT_LOG(SeverityInfo) << L"yes" << ILogger::c_strLogToken3;
        else
            TOOLKIT_LOG(SeverityInfo) << L"no" << ILogger::c_strLogToken3;
    }

    EXPECT_THAT(log.Lines(), ElementsAre(IsLogLine(SeverityInfo, L"TestBody", L"yes"),
                                         IsLogLine(SeverityInfo, L"TestBody", L"no")));
}

TEST(LogTest, DoesNothingWithoutAProcessLogger)
{
    ASSERT_EQ(ILogger::s_pInstance, nullptr);

    Report(SeverityError);
    const CapturedLog log;
    EXPECT_THAT(log.Pieces(), IsEmpty());
}

} // namespace
} // namespace Toolkit
