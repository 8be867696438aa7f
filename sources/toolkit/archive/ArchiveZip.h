#pragma once

#include "toolkit/archive/ArchiveEntriesFlags.h"
#include "toolkit/archive/ArchiveZipEntry.h"
#include "toolkit/archive/ZipInputStream.h"
#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <map>

namespace Toolkit {

/// Lists a Zip archive and reads its entries.
///
///     ArchiveZip archive;
///     archive.Open(path);
///     ArchiveZip::EntriesMap entries;
///     archive.EntriesList(entries, L"", ArchiveEntriesFlags::FilesOnly);
///     for (const auto& [name, entry] : entries) {
///         std::vector<unsigned char> bytes;
///         *archive.GetZipInputStream(entry) >> bytes;
///     }
///
/// One object is used by one thread at a time. Nothing is thrown.
class TOOLKIT_API ArchiveZip {
public:
    /// Entries by name. Names have the system's form: that of a directory ends in a separator.
    using EntriesMap = std::map<TString<wchar_t>, smart_ptr<ArchiveZipEntry>>;

    ArchiveZip();
    virtual ~ArchiveZip();

    /// Closes the open archive and opens the file `path`. EntriesList() reports whether that
    /// succeeded. When out of memory the archive is closed. A pipe can be listed, but its entries
    /// cannot be read afterwards.
    ///
    /// Names not marked as UTF-8 are decoded in the encoding of the environment's locale, or as ISO
    /// 8859-1 where they are not valid in it.
    void Open(const TString<wchar_t>& path);

    /// Streams from GetZipInputStream() stay usable.
    void Close();

    /// Replaces `entries` by those of the archive; of entries with one name the first counts.
    /// Returns their number, or -1, and logs an error, when the archive is closed or cannot be
    /// read. Also -1, without a log line, when out of memory.
    ///
    /// Lists only names that begin with the part of `filter` before its last "*", regardless of
    /// case; the part after that star is ignored. The empty filter and "*.*" list all.
    ///
    /// Listing leaves the archive at the end of its data: to list it again, open it again. For a
    /// file that is not an archive, the first listing has 0 entries.
    int EntriesList(EntriesMap& entries, const TString<wchar_t>& filter,
                    ArchiveEntriesFlags::ArchiveEntriesType type);

    /// The archive's one stream, moved to the beginning of `entry`, which must come from a listing
    /// of this archive. If the entry cannot be opened, the first read fails. An empty `entry`
    /// leaves the stream where it is. The result is empty when the archive is closed.
    smart_ptr<ZipInputStream> GetZipInputStream(const smart_ptr<ArchiveZipEntry>& entry);

private:
    smart_ptr<ZipInputStream> m_stream; // empty when closed
};

} // namespace Toolkit
