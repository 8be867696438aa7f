#include "FileTime.h"

namespace Tool {

timespec GetModificationTime(const struct stat& file)
{
    return file.st_mtimespec;
}

} // namespace Tool
