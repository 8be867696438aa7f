#pragma once

#include "toolkit/core/Export.h"

#include <wx/zipstrm.h>

namespace Toolkit {

/// One entry of a Zip archive, with the properties of `wxZipEntry`. They come from the archive's
/// central directory, or for a pipe from the header before the entry's data.
///
/// Names and sizes are what the archive claims. A name may contain ".." or backslashes, so a
/// program must check where it leads before extracting. "/" and "./" at the beginning are removed.
class TOOLKIT_API ArchiveZipEntry : public wxZipEntry {
public:
    /// Copies `entry`. Throws std::bad_alloc when out of memory.
    ArchiveZipEntry(const wxZipEntry& entry);
    ~ArchiveZipEntry() override;
};

} // namespace Toolkit
