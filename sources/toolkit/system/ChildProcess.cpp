#include "toolkit/config/CmdLineParser.h"
#include "toolkit/encoding/Utf8Codec.Private.h"
#include "toolkit/system/ChildProcess.Private.h"
#include "toolkit/system/InheritedDescriptors.Private.h"

#include <cerrno>
#include <new>
#include <sys/wait.h>
#include <unistd.h>

namespace Toolkit {
namespace {

int WaitForEnd(pid_t child)
{
    int status = 0;
    pid_t ended = -1;
    do {
        ended = ::waitpid(child, &status, 0);
    } while (ended < 0 && errno == EINTR);
    return ended;
}

// Throws when there is no memory: a program must not be started without what it is to do.
std::vector<TString<wchar_t>> TokensOf(const TString<wchar_t>& arguments)
{
    std::vector<TString<wchar_t>> tokens(1);
    const auto* const before = tokens.data();
    CmdLineParser::Tokenize(arguments, tokens);
    // For want of memory the list is emptied where it is, otherwise another one takes its place.
    if (tokens.data() == before)
        throw std::bad_alloc();
    return tokens;
}

} // namespace

ChildProcess::ChildProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments)
{
    const std::vector<TString<wchar_t>> tokens = TokensOf(arguments);
    m_texts.push_back(Utf8Codec::Encode(path));
    for (const TString<wchar_t>& token : tokens)
        m_texts.push_back(Utf8Codec::Encode(token));

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

// Calls only what is safe between fork() and execv() in a process with several threads. The
// parent's destructors and buffers are none of the child's business, so it does not leave by
// exit().
void ChildProcess::ExecuteInChild() const
{
    CloseInheritedDescriptorsOnExec();
    ::execv(m_arguments.front(), m_arguments.data());
    ::_exit(errno);
}

} // namespace Toolkit
