#pragma once

#include "toolkit/core/Export.h"

#include <wx/zipstrm.h>

namespace Toolkit {

/// One entry of a Zip archive, as the archive's directory describes it. Everything is read through
/// the framework's class.
///
/// Names and sizes are those that the archive claims: a name may hold ".." or back-slashes, so a
/// program that extracts checks where it leads. A "/" or "./" at its beginning is not part of it.
class TOOLKIT_API ArchiveZipEntry : public wxZipEntry {
public:
    /// A copy of `entry`. Without memory std::bad_alloc leaves it.
    ArchiveZipEntry(const wxZipEntry& entry);
    ~ArchiveZipEntry() override;
};

} // namespace Toolkit
