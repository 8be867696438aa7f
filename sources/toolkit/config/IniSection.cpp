#include "toolkit/base/Utf8.h"
#include "toolkit/config/IniSection.Private.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace Toolkit {

IniSection::IniSection(std::string_view sectionName)
{
    Base::AppendDecodedUtf8(name, sectionName.data(), sectionName.size());
}

// Relaxed, as in the destructor: while a section is moved or destroyed no other thread reads it.
// Whatever hands the section to this thread orders these operations after the exchange in Widen().
IniSection::IniSection(IniSection&& other) noexcept
    : name(std::move(other.name)), m_entries(std::move(other.m_entries)),
      m_index(std::move(other.m_index)),
      m_wide(other.m_wide.exchange(nullptr, std::memory_order_relaxed))
{
}

IniSection::~IniSection()
{
    delete m_wide.load(std::memory_order_relaxed);
}

void IniSection::Add(std::string_view key, std::string_view value)
{
    m_entries.push_back({key, value});
}

void IniSection::Complete()
{
    m_index.Reserve(m_entries, m_entries.size());
    std::size_t kept = 0;
    for (const Entry& entry : m_entries) {
        m_entries[kept] = entry;
        // If a key is repeated, its first line counts.
        if (m_index.Add(m_entries, kept))
            ++kept;
    }
    m_entries.resize(kept);
    m_entries.shrink_to_fit();
}

bool IniSection::HasKey(std::wstring_view key) const
{
    return m_index.Find(m_entries, key) != NameIndex::c_missing;
}

const TString<wchar_t>* IniSection::FindValue(std::wstring_view key) const
{
    const WideEntries* const published = m_wide.load(std::memory_order_acquire);
    const std::vector<WideEntry>& entries = (published ? *published : Widen()).list;
    const std::size_t position = m_index.Find(entries, key);
    return position == NameIndex::c_missing ? nullptr : &entries[position].value;
}

// Converts the entries to wide strings and publishes the result: release, paired with acquire in
// every reader. If two threads convert them at the same time, the second result is discarded.
const IniSection::WideEntries& IniSection::Widen() const
{
    auto wide = std::make_unique<WideEntries>();
    wide->list.resize(m_entries.size());
    std::size_t length = 0;
    for (const Entry& entry : m_entries)
        length += entry.name.size();
    wide->names.reserve(length);
    std::vector<std::size_t> ends;
    ends.reserve(m_entries.size());
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const auto& [key, value] = m_entries[i];
        Base::AppendDecodedUtf8(wide->names, key.data(), key.size());
        ends.push_back(wide->names.size());
        Base::AppendDecodedUtf8(wide->list[i].value, value.data(), value.size());
    }
    // Only now, because appending may move the characters that the views point to.
    std::size_t begin = 0;
    for (std::size_t i = 0; i < ends.size(); ++i) {
        wide->list[i].name = std::wstring_view(wide->names).substr(begin, ends[i] - begin);
        begin = ends[i];
    }
    const WideEntries* published = nullptr;
    if (!m_wide.compare_exchange_strong(published, wide.get(), std::memory_order_release,
                                        std::memory_order_acquire))
        return *published;
    return *wide.release();
}

void IniSection::ListKeys(std::vector<TString<wchar_t>>& keys) const
{
    std::vector<std::string_view> names(m_entries.size());
    std::transform(m_entries.begin(), m_entries.end(), names.begin(),
                   [](const Entry& entry) { return entry.name; });
    // Bytewise order of UTF-8 is the order of its code points.
    std::sort(names.begin(), names.end());
    keys.reserve(names.size());
    for (const std::string_view key : names)
        Base::AppendDecodedUtf8(keys.emplace_back(), key.data(), key.size());
}

} // namespace Toolkit
