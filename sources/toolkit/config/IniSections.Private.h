#pragma once

#include "toolkit/config/IniSection.Private.h"
#include "toolkit/config/NameIndex.Private.h"

#include <string>
#include <string_view>
#include <vector>

namespace Toolkit {

/// The sections of an INI file. Keeps the bytes of the file, because all keys and values point into
/// them.
class IniSections {
public:
    /// Parses the lines of an INI file in UTF-8.
    explicit IniSections(std::string text);

    /// Returns null if the section does not exist.
    const IniSection* Find(std::wstring_view name) const;

private:
    IniSection* ParseLine(std::string_view line, IniSection* section);
    IniSection& GetOrAddSection(std::string_view name);

    std::string m_text;
    std::vector<IniSection> m_sections;
    NameIndex m_index; // for m_sections
};

} // namespace Toolkit
