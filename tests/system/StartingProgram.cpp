// A program that starts another one, while its own standard output holds text that was not written
// yet and an object waits for its destruction at the end.

#include "toolkit/system/SystemInfo.h"

#include <cstdio>

namespace {

class Farewell {
public:
    ~Farewell() { std::fputs("destroyed\n", stdout); }
};

const Farewell s_farewell;

} // namespace

int main()
{
    std::fputs("buffered\n", stdout);
#ifdef __SANITIZE_THREAD__
    // The sanitizer's own _exit() writes the buffers of the standard streams.
    std::fflush(stdout);
#endif
    return Toolkit::SystemInfo::StartProcess(L"/nonexistent/program", L"", true) > 0 ? 0 : 1;
}
