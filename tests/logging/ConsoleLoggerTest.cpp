#include "toolkit/logging/ConsoleLogger.h"

#include "support/ScopedLocale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <ios>
#include <iostream>
#include <sstream>
#include <streambuf>

#include "logging/WideOutput.h"

namespace Toolkit {
namespace {

using Testing::CapturedWideOutput;
using Testing::OutputOfProcess;

// Takes nothing, as a terminal that has gone.
class BrokenBuffer : public std::wstreambuf {};

// Takes nothing as long as it is broken.
class MendableBuffer : public std::wstringbuf {
public:
    bool isBroken = true;

private:
    int_type overflow(int_type character) override
    {
        return isBroken ? traits_type::eof() : std::wstringbuf::overflow(character);
    }
    std::streamsize xsputn(const wchar_t* text, std::streamsize length) override
    {
        return isBroken ? 0 : std::wstringbuf::xsputn(text, length);
    }
};

TEST(ConsoleLoggerTest, WritesTextAsItIs)
{
    const CapturedWideOutput output;
    ConsoleLogger logger(SeverityVerbose);

    logger.Write(L"one");
    logger.Write(L"");
    logger.Write(L" \u20AC\U0001F600\n");
    EXPECT_EQ(output.Text(), L"one \u20AC\U0001F600\n");
}

TEST(ConsoleLoggerTest, NeverFlushes)
{
    const CapturedWideOutput output;
    ConsoleLogger logger(SeverityVerbose);

    logger.Write(L"line\n");
    logger.Write(L"\u20AC\n");
    EXPECT_EQ(output.FlushCount(), 0);
}

TEST(ConsoleLoggerTest, FreshLoggerWritesForTheHighestThresholdOnly)
{
    for (int threshold = SeverityError; threshold <= SeverityVerbose; ++threshold) {
        SCOPED_TRACE(threshold);
        const CapturedWideOutput output;
        ConsoleLogger logger(static_cast<LogSeverity>(threshold));

        logger << L"text";
        EXPECT_EQ(output.Text(), threshold == SeverityVerbose ? L"text" : L"");
    }
}

TEST(ConsoleLoggerTest, SeverityStaysFromStatementToStatement)
{
    const CapturedWideOutput output;
    ConsoleLogger logger(SeverityInfo);

    logger << SetSeverity(SeverityDebug);
    logger << L"no";
    logger << SetSeverity(SeverityInfo);
    logger << L"yes";
    logger << L", again";
    logger << SetSeverity(SeverityError);
    logger << L", and again";
    EXPECT_EQ(output.Text(), L"yes, again, and again");
}

TEST(ConsoleLoggerTest, ReachesTheStandardOutput)
{
    const std::string output = OutputOfProcess([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ConsoleLogger(SeverityVerbose).Write(L"1 \u20AC\n");
    });

    EXPECT_EQ(output, "1 \xE2\x82\xAC\n");
}

TEST(ConsoleLoggerTest, IsNotSilencedByACharacterThatTheLocaleLacks)
{
    const std::string output = OutputOfProcess([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ConsoleLogger logger(SeverityVerbose);
        logger.Write(L"a\xD800z");
        logger.Write(L"next\n");
    });

    EXPECT_EQ(output, "a?znext\n");
}

TEST(ConsoleLoggerTest, IsNotSilencedWhenTheStreamBuffersItself)
{
    const std::string output = OutputOfProcess([] {
        std::ios_base::sync_with_stdio(false);
        ConsoleLogger logger(SeverityVerbose);
        logger.Write(L"a\u20ACz");
        logger.Write(L"next\n");
    });

    EXPECT_EQ(output, "a?znext\n");
}

TEST(ConsoleLoggerTest, WritesAgainAfterTheStreamHasFailed)
{
    for (const wchar_t* const lost : {L"lost", L"lost \u20AC"}) {
        MendableBuffer buffer;
        std::wstreambuf* const good = std::wcout.rdbuf(&buffer);
        ConsoleLogger logger(SeverityVerbose);

        logger.Write(lost);
        buffer.isBroken = false;
        logger.Write(L"text");
        logger.Write(L" \u20AC");

        std::wcout.rdbuf(good);
        EXPECT_EQ(buffer.str(), L"text \u20AC");
    }
}

TEST(ConsoleLoggerTest, LetsNoExceptionOfTheStreamThrough)
{
    BrokenBuffer broken;
    ConsoleLogger logger(SeverityVerbose);
    std::wstreambuf* const good = std::wcout.rdbuf(&broken);
    std::wcout.exceptions(std::ios_base::badbit | std::ios_base::failbit);

    EXPECT_NO_THROW(logger.Write(L"lost"));
    EXPECT_NO_THROW(logger.Write(L"lost \u20AC"));

    std::wcout.exceptions(std::ios_base::goodbit);
    std::wcout.rdbuf(good);
    EXPECT_TRUE(std::wcout.good());
}

} // namespace
} // namespace Toolkit
