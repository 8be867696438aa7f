#include "FileTime.h"

namespace Tool {

timespec ModificationTime(const struct stat& file)
{
    return file.st_mtim;
}

} // namespace Tool
