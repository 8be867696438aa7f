#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <unistd.h>

#include "ToolFixture.h"

namespace Toolkit::TestSupport {
namespace {

using testing::HasSubstr;

const std::string c_pages = TOOLKIT_SOURCE_DIR "/tools/man/";

// Tests one of the manual pages.
class ManPageTest : public ToolFixture, public testing::WithParamInterface<std::string> {
protected:
    ManPageTest()
    {
        Write(L"settings.ini", "[Window]\nwidth=640\n");
        Write(L"README.md", "The license is not chosen yet.\n");
        RunInShell("cd $dir && zip -q texts.zip README.md && mkdir docs && echo x > docs/a.md && "
                   "zip -q texts.zip docs/a.md && ln -s $toolkit toolkit");
        std::ofstream("/tmp/" + m_logger + ".qvlog")
            << "1 100 : 64 : Parse : Unable to open file : settings.ini\n";
    }
    ~ManPageTest() override { std::filesystem::remove("/tmp/" + m_logger + ".qvlog"); }

    // Returns the page's first block of examples as shell commands: without roff escapes, and
    // with this test's logger instead of "example".
    std::string ReadExamples() const
    {
        const std::string page = ReadWholeFile(c_pages + GetParam() + ".1");
        const std::size_t begin = page.find(".EX\n") + 4;
        std::string lines = page.substr(begin, page.find(".EE\n") - begin);
        lines = std::regex_replace(lines, std::regex(R"(\\\(aq)"), "'");
        lines = std::regex_replace(lines, std::regex(R"(\\-)"), "-");
        lines = std::regex_replace(lines, std::regex("/tmp/example"), "/tmp/" + m_logger);
        return std::regex_replace(lines, std::regex(" example\n"), " " + m_logger + "\n");
    }

private:
    const std::string m_logger = "toolkit-example-" + std::to_string(::getpid());
};

TEST_P(ManPageTest, FormatsWithoutWarnings)
{
    const ProgramResult result = RunInShell("LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 -Z " +
                                            c_pages + GetParam() + ".1");

    if (result.exitCode == 127)
        GTEST_SKIP() << "man is not installed";
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
}

// A server in the background needs a moment to create its socket. The test waits for the socket
// before it runs the next command.
TEST_P(ManPageTest, HasExamplesThatRun)
{
    std::string lines = ReadExamples();
    EXPECT_THAT(lines, HasSubstr("toolkit "));
    lines = std::regex_replace(lines, std::regex("ipc &\n"),
                               "ipc &\nuntil [ -S example.ipc ]; do sleep 0.01; done\n");

    const ProgramResult result =
        RunInShell("cd $dir && PATH=$dir:$PATH && set -e\n" + lines + "wait");

    EXPECT_EQ(result.exitCode, 0) << lines << result.errors;
}

INSTANTIATE_TEST_SUITE_P(Pages, ManPageTest,
                         testing::Values("toolkit", "toolkit-about", "toolkit-ini", "toolkit-ipc",
                                         "toolkit-log", "toolkit-paths", "toolkit-zip"),
                         [](const auto& page) {
                             return std::regex_replace(page.param, std::regex("-"), "_");
                         });

} // namespace
} // namespace Toolkit::TestSupport
