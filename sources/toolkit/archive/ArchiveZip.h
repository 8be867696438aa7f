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
    /// Entries by their names, which come in the system's form: a directory's ends in a separator.
    using EntriesMap = std::map<TString<wchar_t>, smart_ptr<ArchiveZipEntry>>;

    ArchiveZip();
    virtual ~ArchiveZip();

    /// Opens the file `path` instead of what was open. Whether that succeeded shows in
    /// EntriesList(); without memory the archive is closed. A pipe can be listed, but its entries
    /// cannot be read after that.
    ///
    /// Names that do not say that they are UTF-8 are in the encoding of the environment's locale,
    /// or ISO 8859-1 where they are not valid in it.
    void Open(const TString<wchar_t>& path);

    /// Streams that were handed out stay usable.
    void Close();

    /// Replaces `entries` by those of the archive; of entries with one name the first counts.
    /// Returns how many there are, or -1, with an error line in the log, when the archive is closed
    /// or cannot be read. Entries that do not fit into memory are -1, too, without a line.
    ///
    /// Only names that begin with `filter` up to its last "*", regardless of case, are listed; what
    /// stands behind that star does not count. The empty filter and "*.*" list all.
    ///
    /// Listing leaves the archive at the end of its data: to list it again, open it again. A file
    /// that is no archive has 0 entries when it is listed first.
    int EntriesList(EntriesMap& entries, const TString<wchar_t>& filter,
                    ArchiveEntriesFlags::ArchiveEntriesType type);

    /// The archive's one stream, moved to the beginning of `entry`, which has to come from a
    /// listing of this archive. When the entry cannot be opened the first read shows it. Without an
    /// entry the stream is left where it is; it is empty when the archive is closed.
    smart_ptr<ZipInputStream> GetZipInputStream(const smart_ptr<ArchiveZipEntry>& entry);

private:
    smart_ptr<ZipInputStream> m_stream; // empty when closed
};

} // namespace Toolkit
