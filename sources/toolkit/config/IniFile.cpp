#include "toolkit/config/IniFile.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/config/IniSections.Private.h"
#include "toolkit/framework/ReadText.h"
#include "toolkit/logging/Log.h"

#include <string>
#include <utility>

namespace Toolkit {
namespace {

// Line number logged for a file that cannot be opened. Fixed, because log readers match on it.
constexpr int c_openFailureLine = 64;

} // namespace

IniFile::IniFile(const TString<wchar_t>& path) : m_loaded(false)
{
    m_loaded = Parse(path);
}

bool IniFile::Parse(const TString<wchar_t>& path)
{
    // Keeps the old settings until the end of the function: `path` may be one of their values.
    const std::shared_ptr<const IniSections> before = std::exchange(m_sections, nullptr);

    std::string text;
    if (!Base::TryOr(false, [&] { return Framework::ReadText(Base::EncodeUtf8(path), text); })) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_openFailureLine)
            << L"Unable to open file : " << path << ILogger::c_strLogToken3;
        return false;
    }
    return Base::RunsWithoutThrowing(
        [&] { m_sections = std::make_shared<const IniSections>(std::move(text)); });
}

const IniSection* IniFile::FindSection(const TString<wchar_t>& section) const
{
    return m_sections ? m_sections->Find(section) : nullptr;
}

bool IniFile::HasSection(const TString<wchar_t>& section) const
{
    return FindSection(section) != nullptr;
}

bool IniFile::HasValue(const TString<wchar_t>& section, const TString<wchar_t>& key) const
{
    const IniSection* const found = FindSection(section);
    return found && found->HasKey(key);
}

const TString<wchar_t>& IniFile::GetValue(const TString<wchar_t>& section,
                                          const TString<wchar_t>& key,
                                          const TString<wchar_t>& defaultValue) const
{
    const IniSection* const found = FindSection(section);
    const TString<wchar_t>* const value = found ? found->FindValue(key) : nullptr;
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
    const IniSection* const found = FindSection(section);
    keys.clear();
    // All keys or none.
    if (found && !Base::RunsWithoutThrowing([&] { found->ListKeys(keys); }))
        keys.clear();
}

} // namespace Toolkit
