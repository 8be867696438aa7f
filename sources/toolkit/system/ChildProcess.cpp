#include "toolkit/base/TokenizeCommandLine.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/system/ChildProcess.Private.h"
#include "toolkit/system/InheritedDescriptors.Private.h"

#include <cerrno>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace Toolkit {
namespace {

// Returns the id of the child after it has ended; -1 if waiting failed.
int WaitForEnd(pid_t child)
{
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    return ended;
}

} // namespace

ChildProcess::ChildProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments)
{
    // These conversions throw when out of memory, so no program starts with arguments missing.
    m_texts.push_back(Base::EncodeUtf8(path));
    for (const std::wstring_view token : Base::TokenizeCommandLine(
             arguments, Base::c_commandLineSeparators, Base::c_commandLineQuote))
        m_texts.push_back(Base::EncodeUtf8(std::wstring(token)));

    for (TString<char>& text : m_texts)
        m_arguments.push_back(text.data());
    m_arguments.push_back(nullptr);
}

int ChildProcess::Start(bool wait) const
{
    const pid_t child = ::fork();
    if (child == 0)
        ExecuteInChild();
    if (child < 0)
        return errno;
    return wait ? WaitForEnd(child) : child;
}

// Calls only async-signal-safe functions. Leaves with _exit(), because exit() would also run the
// parent's destructors and write its buffers.
void ChildProcess::ExecuteInChild() const
{
    CloseInheritedDescriptorsOnExec();
    ::execv(m_arguments.front(), m_arguments.data());
    ::_exit(errno);
}

} // namespace Toolkit
