// Compares the settings that IniFile reads from random files with those of a plain reference
// parser.

#include "toolkit/config/IniFile.h"

#include "support/RandomText.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::RandomText;
using TestSupport::TempDir;
using Section = std::map<std::string, std::string>;
using Sections = std::map<std::string, Section>;

std::string ReferenceTrim(const std::string& text)
{
    std::string trimmed;
    std::string spaces;
    for (const char character : text) {
        if (character == ' ' || character == '\t') {
            spaces += character;
        } else {
            trimmed += trimmed.empty() ? std::string() : spaces;
            trimmed += character;
            spaces.clear();
        }
    }
    return trimmed;
}

Sections ReferenceSections(const std::vector<std::string>& lines)
{
    Sections sections;
    Section* current = nullptr;
    for (const std::string& line : lines) {
        if (line.empty())
            continue;
        const std::size_t last = line.size() - 1;
        if (last > 0 && line[0] == '[' && line[last] == ']') {
            current = &sections[line.substr(1, last - 1)];
        } else if (line[0] != ';' && current) {
            for (std::size_t i = 0; i <= last; ++i) {
                if (line[i] == '=') {
                    current->insert(
                        {ReferenceTrim(line.substr(0, i)), ReferenceTrim(line.substr(i + 1))});
                    break;
                }
            }
        }
    }
    return sections;
}

std::vector<std::string> RandomLines(RandomText& random)
{
    std::vector<std::string> lines(random.Number<std::size_t>(0, 12));
    for (std::string& line : lines) {
        line = random.Text<char>("aaAb=== \t[];\"", 8);
        if (random.Number(0, 2) == 0)
            line = "[" + random.Text<char>("ab", 1) + "]";
    }
    return lines;
}

std::string Narrow(const std::wstring& text)
{
    return {text.begin(), text.end()};
}

TString<wchar_t> Widen(const std::string& text)
{
    return std::wstring(text.begin(), text.end());
}

// Returns the settings of `ini` in all sections that `lines` may name.
Sections Contents(const IniFile& ini, const std::vector<std::string>& lines)
{
    Sections sections;
    for (const std::string& line : lines) {
        const std::string name = line.size() > 1 ? line.substr(1, line.size() - 2) : line;
        if (!ini.HasSection(Widen(name)))
            continue;
        std::vector<TString<wchar_t>> keys;
        ini.GetKeyList(Widen(name), keys);
        Section& section = sections[name];
        for (const TString<wchar_t>& key : keys)
            section[Narrow(key)] = Narrow(ini.GetValue(Widen(name), key, L"(none)"));
    }
    return sections;
}

TEST(IniFileReferenceTest, ReadsRandomFilesAsTheReferenceDoes)
{
    const std::string lineEnds[] = {"\n", "\r\n", "\n", "\n"};
    const TempDir directory;
    RandomText random(52);
    for (int round = 0; round < 3000; ++round) {
        const std::vector<std::string> lines = RandomLines(random);
        std::string bytes;
        for (const std::string& line : lines)
            bytes += line + lineEnds[random.Number(0, 3)];
        const IniFile ini(directory.WriteFile(std::to_wstring(round), bytes));

        ASSERT_EQ(Contents(ini, lines), ReferenceSections(lines)) << testing::PrintToString(bytes);
    }
}

} // namespace
} // namespace Toolkit
