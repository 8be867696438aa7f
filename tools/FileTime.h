#pragma once

#include <ctime>
#include <sys/stat.h>

namespace Tool {

/// Returns the time at which the file was last written.
timespec GetModificationTime(const struct stat& file);

} // namespace Tool
