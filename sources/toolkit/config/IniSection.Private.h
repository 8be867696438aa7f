#pragma once

#include "toolkit/config/NameIndex.Private.h"
#include "toolkit/core/TString.h"

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

namespace Toolkit {

/// One section of an INI file. Keys and values point into the UTF-8 text of the file, which must
/// outlive the section. The first read of a value converts all of them to wide strings.
class IniSection {
public:
    explicit IniSection(std::string_view sectionName);
    IniSection(IniSection&& other) noexcept;
    ~IniSection();

    IniSection& operator=(IniSection&&) = delete;

    /// Appends a key, which may repeat an earlier one.
    void Add(std::string_view key, std::string_view value);

    /// Keeps the first entry of each key and indexes the keys. Called once, after the last Add().
    void Complete();

    bool HasKey(std::wstring_view key) const;

    /// Returns the value of `key`, or null if the key is missing. Any thread may call it. Throws
    /// std::bad_alloc, with everything unchanged, if the values do not fit into memory.
    const TString<wchar_t>* FindValue(std::wstring_view key) const;

    /// Appends the keys in ascending order of code points.
    void ListKeys(std::vector<TString<wchar_t>>& keys) const;

    std::wstring name;

private:
    struct Entry {
        std::string_view name;
        std::string_view value;
    };

    // The entries as wide strings, in the same order.
    struct WideEntry {
        std::wstring_view name;
        TString<wchar_t> value;
    };
    struct WideEntries {
        std::wstring names; // one after another; WideEntry::name points into it
        std::vector<WideEntry> list;
    };

    const WideEntries& Widen() const;

    std::vector<Entry> m_entries;
    NameIndex m_index; // for m_entries and for WideEntries::list
    mutable std::atomic<const WideEntries*> m_wide{nullptr};
};

} // namespace Toolkit
