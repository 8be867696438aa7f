#include "toolkit/config/IniFile.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"
#include "toolkit/framework/TextFileLines.h"
#include "toolkit/logging/Log.h"

#include <algorithm>

namespace Toolkit {
namespace {

// Line number logged for a file that cannot be opened. Fixed, because log readers match on it.
constexpr int c_openFailureLine = 64;

bool IsBlank(wchar_t character)
{
    return character == L' ' || character == L'\t';
}

// Copies a part of a line without the spaces and tabs around it.
TString<wchar_t> TrimmedCopy(const wchar_t* begin, const wchar_t* end)
{
    begin = std::find_if_not(begin, end, IsBlank);
    while (end != begin && IsBlank(end[-1]))
        --end;
    return std::wstring(begin, end);
}

// The value of a name; null when the name is missing.
template <typename Value>
const Value* Find(const std::map<TString<wchar_t>, Value>& map, const TString<wchar_t>& name)
{
    const auto found = map.find(name);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace

IniFile::IniFile(const TString<wchar_t>& path) : m_loaded(false)
{
    m_loaded = Parse(path);
}

bool IniFile::Parse(const TString<wchar_t>& path)
{
    // Kept to the end: `path` may be one of the values.
    SectionMap before;
    before.swap(m_sections);

    Framework::TextFileLines file;
    if (!Base::ResultOr(false, [&] { return file.Load(Base::EncodeUtf8(path)); })) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_openFailureLine)
            << L"Unable to open file : " << path << ILogger::c_strLogToken3;
        return false;
    }
    const bool isRead = Base::Completes([&] {
        KeyMap* section = nullptr;
        for (std::size_t i = 0; i < file.GetLineCount(); ++i)
            section = ParseLine(Framework::ToText(file.GetLine(i)), section);
    });
    if (!isRead)
        m_sections.clear();
    return isRead;
}

// Returns the section that the lines after this one belong to; null above the first header.
IniFile::KeyMap* IniFile::ParseLine(const TString<wchar_t>& line, KeyMap* section)
{
    if (line.empty() || line.front() == L';')
        return section;
    if (line.front() == L'[' && line.back() == L']')
        return &m_sections[line.substr(1, line.size() - 2)];

    const std::size_t equals = line.find(L'=');
    if (equals == std::wstring::npos || !section)
        return section;

    const wchar_t* const text = line.data();
    // The first line for a key counts: emplace() does not replace a key.
    section->emplace(TrimmedCopy(text, text + equals),
                     TrimmedCopy(text + equals + 1, text + line.size()));
    return section;
}

const TString<wchar_t>* IniFile::FindValue(const TString<wchar_t>& section,
                                           const TString<wchar_t>& key) const
{
    const KeyMap* const keys = Find(m_sections, section);
    return keys ? Find(*keys, key) : nullptr;
}

bool IniFile::HasSection(const TString<wchar_t>& section) const
{
    return Find(m_sections, section) != nullptr;
}

bool IniFile::HasValue(const TString<wchar_t>& section, const TString<wchar_t>& key) const
{
    return FindValue(section, key) != nullptr;
}

const TString<wchar_t>& IniFile::GetValue(const TString<wchar_t>& section,
                                          const TString<wchar_t>& key,
                                          const TString<wchar_t>& defaultValue) const
{
    const TString<wchar_t>* const value = FindValue(section, key);
    return value ? *value : defaultValue;
}

unsigned int IniFile::GetUint32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                                unsigned int defaultValue) const
{
    const TString<wchar_t>& value = GetValue(section, key, TString<wchar_t>::Empty());
    return value.empty() ? defaultValue : value.ToUint32();
}

int IniFile::GetInt32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                      int defaultValue) const
{
    const TString<wchar_t>& value = GetValue(section, key, TString<wchar_t>::Empty());
    return value.empty() ? defaultValue : value.ToInt32();
}

bool IniFile::GetBool(const TString<wchar_t>& section, const TString<wchar_t>& key,
                      bool defaultValue) const
{
    const TString<wchar_t>& value = GetValue(section, key, TString<wchar_t>::Empty());
    return value.empty() ? defaultValue : value.ToUint32() == 1;
}

void IniFile::GetKeyList(const TString<wchar_t>& section, std::vector<TString<wchar_t>>& keys) const
{
    // Before clear(): `section` may be an element of `keys`.
    const KeyMap* const found = Find(m_sections, section);
    keys.clear();
    if (!found)
        return;
    const bool isListed = Base::Completes([&] {
        keys.reserve(found->size());
        for (const auto& entry : *found)
            keys.push_back(entry.first);
    });
    // Rather none than some of them.
    if (!isListed)
        keys.clear();
}

} // namespace Toolkit
