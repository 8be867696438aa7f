#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>

namespace Toolkit::TestSupport {
namespace {

std::string ReadFileOfTree(const std::string& name)
{
    return ReadWholeFile(TOOLKIT_SOURCE_DIR "/" + name);
}

// Returns the first code block of `language` in `text`.
std::string FindCodeBlock(const std::string& text, const std::string& language)
{
    const std::string opening = "\n```" + language + "\n";
    const std::size_t begin = text.find(opening);
    if (begin == std::string::npos)
        return {};
    const std::size_t code = begin + opening.size();
    return text.substr(code, text.find("```", code) - code);
}

TEST(ReadmeTest, ShowsTheTestedProgramAndProject)
{
    const std::string readme = ReadFileOfTree("README.md");
    constexpr std::pair<const char*, const char*> cases[] = {
        {"cpp", "examples/hello/Hello.cpp"}, {"cmake", "examples/hello/CMakeLists.txt"}};

    for (const auto& [language, file] : cases) {
        SCOPED_TRACE(file);
        EXPECT_EQ(FindCodeBlock(readme, language), ReadFileOfTree(file));
        EXPECT_THAT(FindCodeBlock(readme, language), testing::Not(testing::IsEmpty()));
    }
}

// All code in the readme is from the tested files.
TEST(ReadmeTest, HasNoOtherCode)
{
    const std::string readme = ReadFileOfTree("README.md");

    for (const std::string opening : {"```cpp\n", "```cmake\n"}) {
        SCOPED_TRACE(opening);
        EXPECT_EQ(readme.find(opening), readme.rfind(opening));
    }
}

} // namespace
} // namespace Toolkit::TestSupport
