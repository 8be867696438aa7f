// For any file, each section that a simple parser finds has the same keys and values in IniFile.

#include "toolkit/config/IniFile.h"
#include "toolkit/files/TextFile.h"

#include "support/InputFile.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace Toolkit;
using Section = std::map<std::wstring, std::wstring>;
using Sections = std::map<std::wstring, Section>;

Section* ParseLine(Sections& sections, Section* current, const TString<wchar_t>& line)
{
    if (line.size() > 1 && line.front() == L'[' && line.back() == L']')
        return &sections[line.substr(1, line.size() - 2)];
    const std::size_t equals = line.find(L'=');
    if (line.empty() || line.front() == L';' || equals == std::wstring::npos || !current)
        return current;
    TString<wchar_t> key = line.substr(0, equals);
    TString<wchar_t> value = line.substr(equals + 1);
    current->insert({key.Trim(), value.Trim()});
    return current;
}

Sections ParseWithReference(const TString<wchar_t>& path)
{
    Sections sections;
    TextFile file;
    if (!file.Open(path))
        return sections;
    Section* current = ParseLine(sections, nullptr, file.GetFirstLine());
    while (!file.Eof())
        current = ParseLine(sections, current, file.GetNextLine());
    return sections;
}

void CompareSection(const IniFile& ini, const std::wstring& name, const Section& section)
{
    const TString<wchar_t> missing = L"(missing)";
    std::vector<TString<wchar_t>> keys;
    ini.GetKeyList(name, keys);
    Require(ini.HasSection(name) && keys.size() == section.size());
    auto key = keys.begin();
    for (const auto& [expectedKey, expectedValue] : section) {
        Require(*key == expectedKey && ini.HasValue(name, *key));
        Require(ini.GetValue(name, *key, missing) == expectedValue);
        if (expectedValue.empty())
            Require(ini.GetInt32(name, *key, 7) == 7 && ini.GetBool(name, *key, true));
        else
            Require(ini.GetBool(name, *key, false) == (ini.GetUint32(name, *key, 0) == 1));
        ++key;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const InputFile file;
    file.Write(data, size);

    const IniFile ini(file.Path());
    for (const auto& [name, section] : ParseWithReference(file.Path()))
        CompareSection(ini, name, section);
    return 0;
}
