#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Which entries a listing of an archive leaves out.
struct TOOLKIT_API ArchiveEntriesFlags {
    enum ArchiveEntriesType {
        AllEntries = 0,
        FilesOnly = 1,
        DirectoriesOnly = 2,
    };
};

} // namespace Toolkit
