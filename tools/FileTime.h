#pragma once

#include <ctime>
#include <sys/stat.h>

namespace Tool {

/// When the file was last written.
timespec GetModificationTime(const struct stat& file);

} // namespace Tool
