#include "OwnExecutable.h"

namespace Tool {

std::string FindOwnExecutable()
{
    return "/proc/self/exe";
}

} // namespace Tool
