#include "toolkit/archive/ArchiveZipEntry.h"

namespace Toolkit {

ArchiveZipEntry::ArchiveZipEntry(const wxZipEntry& entry) : wxZipEntry(entry) {}

ArchiveZipEntry::~ArchiveZipEntry() = default;

} // namespace Toolkit
