#include "toolkit/config/CmdLineParser.h"
#include "toolkit/config/IniFile.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using Toolkit::CmdLineParser;
using Toolkit::IniFile;
using Text = TString<wchar_t>;

// Writes a file with one section, or with sections of ten keys each, and returns its path.
Text WriteSettings(int keys, bool hasManySections)
{
    const std::filesystem::path path = GetDirectory() / "settings.ini";
    std::ofstream file(path);
    for (int key = 0; key < keys; ++key) {
        if (key == 0 || (hasManySections && key % 10 == 0))
            file << "[Section " << key << "]\n";
        file << "key" << key << " = value of " << key << '\n';
    }
    return ToWide(path);
}

Run PrepareLoad(int keys, bool hasManySections)
{
    const Text path = WriteSettings(keys, hasManySections);
    const auto settings = std::make_shared<std::optional<IniFile>>();
    return [path, settings] {
        settings->emplace(path);
        Require((*settings)->IsLoaded());
    };
}

Run PrepareLookup(int keys)
{
    const auto settings = std::make_shared<IniFile>(WriteSettings(keys, false));
    return [keys, settings] {
        for (int key = 0; key < keys; ++key)
            Require(settings->HasValue(L"Section 0", L"key" + std::to_wstring(key)));
    };
}

Run PrepareRead(int keys)
{
    const Text path = WriteSettings(keys, false);
    const auto settings = std::make_shared<std::optional<IniFile>>();
    return [path, settings] {
        settings->emplace(path);
        Require(!(*settings)->GetValue(L"Section 0", L"key0", Text::Empty()).empty());
    };
}

Run PrepareKeyList(int keys)
{
    const auto settings = std::make_shared<IniFile>(WriteSettings(keys, false));
    return [keys, settings] {
        std::vector<Text> list;
        settings->GetKeyList(L"Section 0", list);
        Require(list.size() == static_cast<std::size_t>(keys));
    };
}

Run PrepareCommandLine(int words)
{
    const auto line = std::make_shared<Text>(L"program");
    for (int word = 0; word < words; ++word)
        *line += L" -option" + std::to_wstring(word) + L" value";
    return [line] { Require(CmdLineParser(*line).Parse()); };
}

} // namespace

void AddSettingsOperations(Operations& operations)
{
    operations.push_back(
        {"IniFile Parse (cache)", c_sizes, [](int keys) { return PrepareLoad(keys, false); }});
    operations.push_back({"IniFile Parse, sections (cache)", c_sizes,
                          [](int keys) { return PrepareLoad(keys, true); }});
    operations.push_back({"IniFile HasValue, all keys (cache)", c_sizes, PrepareLookup});
    operations.push_back({"IniFile Parse and GetValue (cache)", c_sizes, PrepareRead});
    operations.push_back({"IniFile GetKeyList (n log n) (cache)", c_sizes, PrepareKeyList});
    operations.push_back({"CmdLineParser Parse", c_sizes, PrepareCommandLine});
}

} // namespace Scale
