#include "toolkit/logging/DebuggerLogger.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "logging/WideOutput.h"

namespace Toolkit {
namespace {

using TestSupport::CapturedWideOutput;
using TestSupport::CaptureOutputOfChild;

TEST(DebuggerLoggerTest, WritesToTheWideStandardOutput)
{
    const CapturedWideOutput output;
    DebuggerLogger logger(SeverityVerbose);

    logger.Write(L"one");
    logger.Write(L" two\n");
    EXPECT_EQ(output.Text(), L"one two\n");
}

TEST(DebuggerLoggerTest, NeverFlushes)
{
    const CapturedWideOutput output;
    DebuggerLogger logger(SeverityVerbose);

    logger.Write(L"line\n");
    logger.Write(L"\u20AC\n");
    EXPECT_EQ(output.FlushCount(), 0);
}

TEST(DebuggerLoggerTest, OmitsMessagesLessSevereThanItsThreshold)
{
    const CapturedWideOutput output;
    DebuggerLogger logger(SeverityInfo);

    logger << L"verbose";
    logger << SetSeverity(SeverityInfo);
    logger << L"info";
    EXPECT_EQ(output.Text(), L"info");
}

TEST(DebuggerLoggerTest, IsNotSilencedByACharacterThatTheLocaleLacks)
{
    const std::string output = CaptureOutputOfChild([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        DebuggerLogger logger(SeverityVerbose);
        logger.Write(L"a\xD800z");
        logger.Write(L"next\n");
    });

    EXPECT_EQ(output, "a?znext\n");
}

} // namespace
} // namespace Toolkit
