#include "support/Soak.h"

#include <cstdio>
#include <cstdlib>

namespace Toolkit::TestSupport {

int SoakRounds(int sample, int full)
{
    return std::getenv("TOOLKIT_SOAK") ? full : sample;
}

void Covered(const std::string& what)
{
    std::printf("covered: %s\n", what.c_str());
    std::fflush(stdout);
}

} // namespace Toolkit::TestSupport
