#pragma once

namespace Toolkit {

/// What a listing of an archive leaves out.
struct ArchiveEntriesFlags {
    enum ArchiveEntriesType {
        AllEntries = 0,
        FilesOnly = 1,
        DirectoriesOnly = 2,
    };
};

} // namespace Toolkit
