#include "OwnExecutable.h"

namespace Tool {

std::string OwnExecutable()
{
    return "/proc/self/exe";
}

} // namespace Tool
