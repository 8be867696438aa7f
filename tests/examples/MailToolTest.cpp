#include "toolkit/encoding/UTF8.h"

#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;

// Runs the program with the time zone of Berlin and a German locale.
class MailToolTest : public testing::Test {
protected:
    ProgramResult RunOnExampleMessage(const std::string& fileName) const
    {
        return Run(TOOLKIT_SOURCE_DIR "/examples/mailtool/messages/" + fileName);
    }

    ProgramResult RunOnText(const std::string& text) const
    {
        return Run(UTF8::ToUTF8(m_directory.WriteFile(L"message.eml", text)));
    }

    ProgramResult Run(const std::string& path) const
    {
        return RunProgram(MAILTOOL_PROGRAM, {path, PartsPath()});
    }

    std::string PartsPath() const { return m_directory.Path() / "parts"; }

    const TempDir m_directory;
    const ScopedEnvironment m_zone{"TZ", "Europe/Berlin"};
    const ScopedEnvironment m_locale{"LC_ALL", "de_DE.UTF-8"};
};

TEST_F(MailToolTest, DecodesQuotedPrintable)
{
    const ProgramResult result = RunOnExampleMessage("quoted.eml");

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "From     Jørgen Bakke <jorgen@kapmoewe.example>\n"
                             "Subject  Die Linse für Kap Möwe\n"
                             "Date     05.03.09 07:04 (short 05.03.09, ISO 2009-03-05 06:04:09 Z)\n"
                             "Part     text/plain, 385 bytes\n"
                             "Stored   in " +
                                 PartsPath() + " and read back\n");
}

TEST_F(MailToolTest, DecodesAnAttachment)
{
    const ProgramResult result = RunOnExampleMessage("attachment.eml");

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("Part     text/plain, 114 bytes\n"
                                         "Part     text/csv \"lenses.csv\", 1802 bytes\n"));
}

TEST_F(MailToolTest, UnfoldsHeaderFields)
{
    const ProgramResult result = RunOnExampleMessage("longheader.eml");

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("From     Åsa Öberg <asa@kapmoewe.example>\n"));
    EXPECT_THAT(result.output, HasSubstr("came back on Wednesday with all three"));
    EXPECT_THAT(result.output, HasSubstr("over the speaking tube – with a drawing\n"));
}

TEST_F(MailToolTest, ConvertsDatesWithAnyZoneOffsetToUtc)
{
    constexpr std::pair<const char*, const char*> cases[] = {
        {"+0000", "2010-12-31 23:05:07 Z"}, {"+0530", "2010-12-31 17:35:07 Z"},
        {"-0330", "2011-01-01 02:35:07 Z"}, {"-1200", "2011-01-01 11:05:07 Z"},
        {"+1300", "2010-12-31 10:05:07 Z"}, {"+0545", "2010-12-31 17:20:07 Z"}};
    for (const auto& [zone, expected] : cases) {
        const ProgramResult result =
            RunOnText("Date: Fri, 31 Dec 2010 23:05:07 " + std::string(zone) + "\n\nx\n");
        EXPECT_THAT(result.output, HasSubstr(expected)) << zone;
    }
}

TEST_F(MailToolTest, StoresTheDecodedBytes)
{
    RunOnText("Content-Type: text/plain\nContent-Transfer-Encoding: base64\n\nU2Vh\nIGd1\n");

    const std::string stored = m_directory.ReadFile(L"parts");

    // The size and the characters of "text/plain ", then the size and the bytes of the content.
    EXPECT_EQ(stored.substr(0, 4), std::string("\x2C\0\0\0", 4));
    EXPECT_EQ(stored.substr(4 + 44), std::string("\x06\0\0\0Sea gu", 10));
}

// Each boundary has characters that are special in a regular expression, or are not ASCII.
TEST_F(MailToolTest, MatchesTheBoundaryLiterally)
{
    for (const std::string boundary :
         {"a.b", "(x", "x\\Ey", "\\Q+", "[0-9]", "a|b", "caf\xC3\xA9"}) {
        SCOPED_TRACE(boundary);
        const ProgramResult result =
            RunOnText("Content-Type: multipart/mixed; boundary=\"" + boundary + "\"\n\n--" +
                      boundary + "\nContent-Type: text/one\n\nfirst\n--" + boundary +
                      "\nContent-Type: text/two\n\nsecond\n--" + boundary + "--\n");
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_THAT(result.output,
                    HasSubstr("Part     text/one, 5 bytes\nPart     text/two, 6 bytes\n"));
    }
}

TEST_F(MailToolTest, EscapesControlCharactersInAMessage)
{
    const ProgramResult result = RunOnText("Subject: =?UTF-8?Q?=1B]0;evil=07?=\n\nx\n");

    EXPECT_THAT(result.output, HasSubstr("Subject  \\x1B]0;evil\\x07\n"));
}

TEST_F(MailToolTest, ShowsAnEmptyPartForAFileThatIsNotAMessage)
{
    const ProgramResult result = RunOnText("no header here");

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("Part     , 0 bytes\n"));
}

TEST_F(MailToolTest, ReportsAMissingMessage)
{
    const std::string path = m_directory.Path() / "missing.eml";

    const ProgramResult result = Run(path);

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "mailtool: cannot read " + path + "\n");
}

TEST_F(MailToolTest, ReportsThatPartsCannotBeStored)
{
    const std::string message = TOOLKIT_SOURCE_DIR "/examples/mailtool/messages/quoted.eml";
    const std::string path = m_directory.Path() / "missing" / "parts";

    const ProgramResult result = RunProgram(MAILTOOL_PROGRAM, {message, path});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "mailtool: cannot write " + path + "\n");
}

TEST_F(MailToolTest, PrintsTheUsageWithoutArguments)
{
    const ProgramResult result = RunProgram(MAILTOOL_PROGRAM, {});

    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "mailtool: usage: mailtool <message> <file for the parts>\n");
}

} // namespace
} // namespace Toolkit::TestSupport
