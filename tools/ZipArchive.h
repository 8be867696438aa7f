#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <toolkit/archive/ArchiveZip.h>

namespace Tool {

/// Which entries of an archive to list. See ArchiveZip::EntriesList() for `filter` and `type`.
struct ZipSelection {
    std::string filter;
    Toolkit::ArchiveEntriesFlags::ArchiveEntriesType type =
        Toolkit::ArchiveEntriesFlags::AllEntries;
};

/// A Zip archive and a selection of its entries.
class ZipArchive {
public:
    using Entry = Toolkit::smart_ptr<Toolkit::ArchiveZipEntry>;

    /// Opens an archive and lists the entries of `selection`. Throws a `Failure` if `path` is not a
    /// readable Zip archive.
    ZipArchive(const std::string& path, const ZipSelection& selection);

    /// Returns the selected entries, keyed by name.
    const Toolkit::ArchiveZip::EntriesMap& GetEntries() const { return m_entries; }

    /// Calls `onBlock` with the bytes of an entry, block by block. Throws a `Failure` if the entry
    /// is encrypted or damaged. A wrong checksum is found only at the end, after `onBlock` has
    /// received all bytes.
    void Read(const Entry& entry, const std::function<void(std::string_view)>& onBlock);

private:
    Toolkit::ArchiveZip m_archive;
    Toolkit::ArchiveZip::EntriesMap m_entries;
};

/// Returns the name of an entry in UTF-8.
std::string GetEntryName(const Toolkit::ArchiveZipEntry& entry);

} // namespace Tool
