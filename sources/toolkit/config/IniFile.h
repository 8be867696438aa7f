#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <map>
#include <vector>

namespace Toolkit {

/// The settings of an INI file, read once: sections of keys and values.
///
///     [Main]
///     ; a comment, in the first column only
///     name = value
///
/// Lines end and are decoded as in `TextFile`. A section is named by everything between the
/// brackets, spaces included; a repeated header continues its section. Spaces and tabs
/// around keys and values are dropped; quotes have no meaning. Of two lines for one key in a
/// section the first counts. Lines above the first header, and lines that are neither header nor
/// key, are ignored. Names are case-sensitive.
///
/// An object may be copied, and read by several threads at once.
class TOOLKIT_API IniFile {
public:
    /// Reads the file `path`; IsLoaded() reports whether that succeeded.
    IniFile(const TString<wchar_t>& path);

    /// Replaces the settings by those of the file `path`. A file that cannot be opened is logged as
    /// an error and gives false and no settings; one whose settings do not fit into memory does
    /// too, but is not logged. IsLoaded() keeps reporting on the construction.
    bool Parse(const TString<wchar_t>& path);

    /// Whether the file given at construction was read.
    bool IsLoaded() const { return m_loaded; }

    /// Whether the section exists, even without keys.
    bool HasSection(const TString<wchar_t>& section) const;

    /// Whether the key exists, even with an empty value.
    bool HasValue(const TString<wchar_t>& section, const TString<wchar_t>& key) const;

    /// The value of a key, or `defaultValue` itself, which has to live as long as the result is
    /// used. The reference is good until the next Parse().
    const TString<wchar_t>& GetValue(const TString<wchar_t>& section, const TString<wchar_t>& key,
                                     const TString<wchar_t>& defaultValue) const;

    /// The number that a value begins with, 0 when it begins with none; `defaultValue` for a key
    /// that is missing or empty.
    unsigned int GetUint32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                           unsigned int defaultValue) const;
    int GetInt32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                 int defaultValue) const;

    /// Whether a value begins with the number 1, so "yes" and "true" are false; `defaultValue` for
    /// a key that is missing or empty.
    bool GetBool(const TString<wchar_t>& section, const TString<wchar_t>& key,
                 bool defaultValue) const;

    /// Replaces `keys` by the keys of a section in ascending order of their code points;
    /// by none when they do not fit into memory.
    void GetKeyList(const TString<wchar_t>& section, std::vector<TString<wchar_t>>& keys) const;

private:
    using KeyMap = std::map<TString<wchar_t>, TString<wchar_t>>;
    using SectionMap = std::map<TString<wchar_t>, KeyMap>;

    const TString<wchar_t>* FindValue(const TString<wchar_t>& section,
                                      const TString<wchar_t>& key) const;
    KeyMap* ParseLine(const TString<wchar_t>& line, KeyMap* section);

    SectionMap m_sections;
    bool m_loaded;
};

} // namespace Toolkit
