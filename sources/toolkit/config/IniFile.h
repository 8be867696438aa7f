#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <memory>
#include <vector>

namespace Toolkit {

class IniSection;
class IniSections;

/// The settings of an INI file, read once: sections of keys and values.
///
///     [Main]
///     ; a comment, in the first column only
///     name = value
///
/// Lines are split and decoded as in `TextFile`. A line that begins with "[" and ends with "]" is
/// the header of a section, whose name is everything between the brackets, spaces included; a
/// repeated header continues its section. Spaces and tabs around keys and values are dropped;
/// quotes have no meaning. If a key is repeated in a section, its first line counts. Lines above
/// the first header, and lines that are neither header nor key, are ignored. Names are
/// case-sensitive.
///
/// An object may be copied. Several threads may read it at the same time. The first read of a value
/// decodes all values of its section: if they do not fit into memory, GetValue(), GetUint32(),
/// GetInt32() and GetBool() throw std::bad_alloc. No other operation throws.
class TOOLKIT_API IniFile {
public:
    /// Reads the file `path` like Parse(); IsLoaded() reports whether that succeeded.
    IniFile(const TString<wchar_t>& path);

    /// Replaces the settings with those of the file `path`. On failure returns false and leaves no
    /// settings. Logs an error if the file cannot be read, but not if memory runs out after that.
    /// IsLoaded() does not change.
    bool Parse(const TString<wchar_t>& path);

    /// Whether the file given at construction was read.
    bool IsLoaded() const { return m_loaded; }

    /// Whether the section exists, even without keys.
    bool HasSection(const TString<wchar_t>& section) const;

    /// Whether the key exists, even with an empty value.
    bool HasValue(const TString<wchar_t>& section, const TString<wchar_t>& key) const;

    /// Returns the value of a key; the reference is valid until the object is destroyed, assigned
    /// to or parses again. Without the key, returns a reference to `defaultValue`, which must
    /// outlive the use of the result.
    const TString<wchar_t>& GetValue(const TString<wchar_t>& section, const TString<wchar_t>& key,
                                     const TString<wchar_t>& defaultValue) const;

    /// Return the number at the beginning of a value, read like TString::ToUint32() and
    /// TString::ToInt32(), or 0 if there is none; `defaultValue` if the key is missing or its value
    /// is empty.
    unsigned int GetUint32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                           unsigned int defaultValue) const;
    int GetInt32(const TString<wchar_t>& section, const TString<wchar_t>& key,
                 int defaultValue) const;

    /// Whether the number at the beginning of a value is 1, so "yes" and "true" are false;
    /// `defaultValue` if the key is missing or its value is empty.
    bool GetBool(const TString<wchar_t>& section, const TString<wchar_t>& key,
                 bool defaultValue) const;

    /// Replaces `keys` with the keys of a section, in ascending order of code points. `keys` is
    /// empty if the section does not exist, and when out of memory.
    void GetKeyList(const TString<wchar_t>& section, std::vector<TString<wchar_t>>& keys) const;

private:
    const IniSection* FindSection(const TString<wchar_t>& section) const;

    std::shared_ptr<const IniSections> m_sections; // null without settings; shared by copies
    bool m_loaded;
};

} // namespace Toolkit
