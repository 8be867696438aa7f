#include "toolkit/logging/ConsoleLogger.h"

#include "support/CompiledLocale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <ios>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

#include "logging/WideOutput.h"

namespace Toolkit {
namespace {

using TestSupport::CapturedWideOutput;
using TestSupport::CaptureOutputOfChild;

// Accepts nothing, like a closed terminal.
class BrokenBuffer : public std::wstreambuf {};

// Accepts nothing while `isBroken` is set.
class RepairableBuffer : public std::wstringbuf {
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

TEST(ConsoleLoggerTest, WritesTextUnchanged)
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

TEST(ConsoleLoggerTest, StartsAtVerboseSeverity)
{
    for (int threshold = SeverityError; threshold <= SeverityVerbose; ++threshold) {
        SCOPED_TRACE(threshold);
        const CapturedWideOutput output;
        ConsoleLogger logger(static_cast<LogSeverity>(threshold));

        logger << L"text";
        EXPECT_EQ(output.Text(), threshold == SeverityVerbose ? L"text" : L"");
    }
}

TEST(ConsoleLoggerTest, KeepsTheSeverityAcrossStatements)
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

TEST(ConsoleLoggerTest, WritesToStandardOutput)
{
    const std::string output = CaptureOutputOfChild([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ConsoleLogger(SeverityVerbose).Write(L"1 \u20AC\n");
    });

    EXPECT_EQ(output, "1 \xE2\x82\xAC\n");
}

TEST(ConsoleLoggerTest, WritesBytesAfterNarrowOutput)
{
    const std::string output = CaptureOutputOfChild([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ConsoleLogger logger(SeverityVerbose);
        std::printf("narrow\n");
        logger.Write(L"wide \u20AC\U0001F600\n");
        logger.Write(std::wstring(L"nu\0l\n", 5));
        std::cout << "narrow again\n" << std::flush;
        logger.Write(L"wide again\n");
    });

    EXPECT_EQ(output, std::string("narrow\nwide \xE2\x82\xAC\xF0\x9F\x98\x80\nnu") + '\0' +
                          "l\nnarrow again\nwide again\n");
}

TEST(ConsoleLoggerTest, UsesTheLocaleEncodingAfterNarrowOutput)
{
    const TestSupport::CompiledLocale locale("de_DE", "ISO-8859-1");
    if (!locale.IsAvailable())
        GTEST_SKIP() << "no locale compiler";

    const std::string output = CaptureOutputOfChild([&locale] {
        std::setlocale(LC_ALL, locale.Name().c_str());
        std::printf("narrow ");
        ConsoleLogger(SeverityVerbose).Write(L"\u00E9\u4E2D.\n");
    });
    EXPECT_EQ(output, "narrow \xE9?.\n");
}

TEST(ConsoleLoggerTest, WritesAQuestionMarkForACharacterThatTheLocaleLacks)
{
    const std::string output = CaptureOutputOfChild([] {
        std::setlocale(LC_ALL, "C");
        std::printf("narrow ");
        ConsoleLogger(SeverityVerbose).Write(L"a\u20AC\xD800z\n");
    });

    EXPECT_EQ(output, "narrow a??z\n");
}

TEST(ConsoleLoggerTest, UsesAReplacedStreamBufferAfterNarrowOutput)
{
    const std::string output = CaptureOutputOfChild([] {
        std::printf("narrow ");
        const CapturedWideOutput captured;
        ConsoleLogger(SeverityVerbose).Write(L"\u20AC");
        std::printf(captured.Text() == L"\u20AC" ? "captured" : "lost");
    });

    EXPECT_EQ(output, "narrow captured");
}

TEST(ConsoleLoggerTest, UsesAnUnsynchronizedStreamAfterNarrowOutput)
{
    const std::string output = CaptureOutputOfChild([] {
        std::printf("narrow ");
        std::fflush(stdout);
        std::ios_base::sync_with_stdio(false);
        ConsoleLogger(SeverityVerbose).Write(L"wide\n");
    });

    EXPECT_EQ(output, "narrow wide\n");
}

TEST(ConsoleLoggerTest, SetsUnusedOutputToWideOrientation)
{
    const std::string output = CaptureOutputOfChild([] {
        ConsoleLogger logger(SeverityVerbose);
        logger.Write(L"wide\n");
        std::printf("refused\n");
        logger.Write(L"wide again\n");
    });

    EXPECT_EQ(output, "wide\nwide again\n");
}

TEST(ConsoleLoggerTest, IsNotSilencedByACharacterThatTheLocaleLacks)
{
    const std::string output = CaptureOutputOfChild([] {
        std::setlocale(LC_ALL, "C.UTF-8");
        ConsoleLogger logger(SeverityVerbose);
        logger.Write(L"a\xD800z");
        logger.Write(L"next\n");
    });

    EXPECT_EQ(output, "a?znext\n");
}

TEST(ConsoleLoggerTest, IsNotSilencedOnAnUnsynchronizedStream)
{
    const std::string output = CaptureOutputOfChild([] {
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
        RepairableBuffer buffer;
        std::wstreambuf* const oldBuffer = std::wcout.rdbuf(&buffer);
        ConsoleLogger logger(SeverityVerbose);

        logger.Write(lost);
        buffer.isBroken = false;
        logger.Write(L"text");
        logger.Write(L" \u20AC");

        std::wcout.rdbuf(oldBuffer);
        EXPECT_EQ(buffer.str(), L"text \u20AC");
    }
}

TEST(ConsoleLoggerTest, CatchesExceptionsFromTheStream)
{
    BrokenBuffer broken;
    ConsoleLogger logger(SeverityVerbose);
    std::wstreambuf* const oldBuffer = std::wcout.rdbuf(&broken);
    std::wcout.exceptions(std::ios_base::badbit | std::ios_base::failbit);

    EXPECT_NO_THROW(logger.Write(L"lost"));
    EXPECT_NO_THROW(logger.Write(L"lost \u20AC"));

    std::wcout.exceptions(std::ios_base::goodbit);
    std::wcout.rdbuf(oldBuffer);
    EXPECT_TRUE(std::wcout.good());
}

} // namespace
} // namespace Toolkit
