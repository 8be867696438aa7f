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
    /// Entries by name. Names use the system's path separator; a directory's name ends with it.
    using EntriesMap = std::map<TString<wchar_t>, smart_ptr<ArchiveZipEntry>>;

    ArchiveZip();
    virtual ~ArchiveZip();

    /// Closes the open archive and opens the file `path`. EntriesList() reports whether that
    /// succeeded. When out of memory, no archive is open afterwards. A pipe can be listed, but its
    /// entries cannot be read afterwards.
    ///
    /// Names not marked as UTF-8 are decoded in the encoding of the environment's locale, or as ISO
    /// 8859-1 if they are not valid in it.
    void Open(const TString<wchar_t>& path);

    /// Closes the archive. Streams from GetZipInputStream() stay usable.
    void Close();

    /// Replaces `entries` with those of the archive; of entries with the same name only the first
    /// is listed. Returns the number of entries; -1, with `entries` empty, after a failure. Logs an
    /// error if the archive is closed or cannot be read, but not when out of memory.
    ///
    /// Lists only names that begin with the part of `filter` before its last "*", regardless of
    /// case. The rest of `filter` is ignored; without a "*" all of it counts. The empty filter and
    /// "*.*" list everything.
    ///
    /// Listing leaves the archive at the end of its data: open it again before listing it again.
    /// For a file that is not an archive, the first listing returns 0.
    int EntriesList(EntriesMap& entries, const TString<wchar_t>& filter,
                    ArchiveEntriesFlags::ArchiveEntriesType type);

    /// Returns the archive's only stream, moved to the beginning of `entry`, which must come from a
    /// listing of this archive. If the entry cannot be opened, the first read fails. An empty
    /// `entry` leaves the stream where it is. Returns an empty pointer when the archive is closed.
    smart_ptr<ZipInputStream> GetZipInputStream(const smart_ptr<ArchiveZipEntry>& entry);

private:
    smart_ptr<ZipInputStream> m_stream; // empty when closed
};

} // namespace Toolkit
