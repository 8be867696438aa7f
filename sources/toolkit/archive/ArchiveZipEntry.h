#pragma once

#include "toolkit/core/Export.h"

#include <wx/zipstrm.h>

namespace Toolkit {

/// One entry of a Zip archive, as the archive's directory describes it. The properties are those of
/// `wxZipEntry`.
///
/// Names and sizes are what the archive claims. A name may contain ".." or backslashes, so a
/// program that extracts must check where it leads. A "/" or "./" at the beginning is removed.
class TOOLKIT_API ArchiveZipEntry : public wxZipEntry {
public:
    /// A copy of `entry`. Throws std::bad_alloc when out of memory.
    ArchiveZipEntry(const wxZipEntry& entry);
    ~ArchiveZipEntry() override;
};

} // namespace Toolkit
