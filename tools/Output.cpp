#include "Output.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

#include "Failure.h"
#include "VisibleText.h"

namespace Tool {
namespace {

constexpr std::size_t c_blockSize = 65536;

bool DoesEnvironmentAllowColours()
{
    const char* const terminal = std::getenv("TERM");
    const char* const noColour = std::getenv("NO_COLOR");
    return terminal && std::string_view(terminal) != "dumb" && (!noColour || *noColour == '\0');
}

} // namespace

Output::Output()
    : m_isTerminal(::isatty(STDOUT_FILENO) == 1),
      m_hasColours(m_isTerminal && DoesEnvironmentAllowColours())
{
    m_pending.reserve(2 * c_blockSize);
}

void Output::Write(std::string_view text)
{
    m_pending.append(text);
    if (m_pending.size() >= c_blockSize)
        Flush();
}

void Output::Write(std::string_view text, Colour colour)
{
    if (!m_hasColours || text.empty()) {
        Write(text);
        return;
    }
    m_pending.append("\033[").append(std::to_string(colour)).append("m");
    m_pending.append(text).append("\033[0m");
}

void Output::WriteVisible(std::string_view text)
{
    AppendVisible(m_pending, text);
    if (m_pending.size() >= c_blockSize)
        Flush();
}

void Output::Flush()
{
    std::string_view rest = m_pending;
    while (!rest.empty()) {
        const ssize_t count = ::write(STDOUT_FILENO, rest.data(), rest.size());
        if (count >= 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            FailToWrite();
    }
    m_pending.clear();
}

// Empties the buffer, so that the next Flush() does not repeat what was already written.
void Output::FailToWrite()
{
    m_pending.clear();
    if (errno == EPIPE)
        throw BrokenPipe();
    throw MakeSystemFailure("cannot write to standard output");
}

void Output::Sleep(int durationMs) const
{
    // poll() reports errors even though `events` asks for none.
    pollfd output{STDOUT_FILENO, 0, 0};
    if (::poll(&output, 1, durationMs) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0)
        throw BrokenPipe();
}

} // namespace Tool
