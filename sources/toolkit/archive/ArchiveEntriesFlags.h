#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Selects which entries of an archive a listing includes.
struct TOOLKIT_API ArchiveEntriesFlags {
    enum ArchiveEntriesType {
        AllEntries = 0,
        FilesOnly = 1,
        DirectoriesOnly = 2,
    };
};

} // namespace Toolkit
