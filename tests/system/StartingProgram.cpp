// A program that tries to start a missing program while standard output has unflushed text and a
// static object exists. The forked child must neither flush the text nor destroy the object.

#include "toolkit/system/SystemInfo.h"

#include "support/Sanitizers.h"

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
#ifdef TOOLKIT_THREAD_SANITIZER
    // The sanitizer's _exit() flushes the buffers of the standard streams.
    std::fflush(stdout);
#endif
    return Toolkit::SystemInfo::StartProcess(L"/nonexistent/program", L"", true) > 0 ? 0 : 1;
}
