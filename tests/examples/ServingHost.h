#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "InstalledProgram.h"
#include "ipc/ChildProgram.h"

namespace Toolkit::TestSupport {

/// An example host that serves in a process of its own. The destructor kills it.
class ServingHost {
public:
    /// Returns once commands can be handed over.
    explicit ServingHost(const InstalledProgram& host,
                         const std::vector<std::string>& arguments = {"-serve", "-quiet"})
        : m_program(host.Path(), arguments)
    {
        AwaitService();
    }

    ~ServingHost()
    {
        m_program.Send(SIGKILL);
        m_program.WaitForExitCode();
        std::error_code ignored;
        std::filesystem::remove(m_socket, ignored);
    }

    ServingHost(const ServingHost&) = delete;
    ServingHost& operator=(const ServingHost&) = delete;

    /// Waits for the line in which the host says where it serves.
    void AwaitService()
    {
        const std::string beginning = "Serving at ";
        m_socket = AwaitLine(beginning).substr(beginning.size());
    }

    /// Waits for a line of output with this beginning, and returns that line. Fails the test if the
    /// output ends first.
    std::string AwaitLine(const std::string& beginning) const
    {
        // The host prints no empty lines, so an empty one means the end of the output.
        for (std::string line = m_program.ReadLine(); !line.empty(); line = m_program.ReadLine()) {
            if (line.compare(0, beginning.size(), beginning) == 0)
                return line;
        }
        ADD_FAILURE() << "the output ended without a line that begins with: " << beginning;
        return beginning;
    }

    /// Waits until the command `title`, such as "1 list", ends. Returns its outcome, which begins
    /// with "done in " or with "failed: ".
    std::string AwaitOutcome(const std::string& title) const
    {
        while (true) {
            const std::string outcome = AwaitLine(title + ": ").substr(title.size() + 2);
            // Progress begins with a digit. An empty outcome means that the output has ended.
            if (outcome != "started" && (outcome.empty() || !std::isdigit(outcome.front())))
                return outcome;
        }
    }

    /// Waits until the host and all processes that it has started have ended. Returns the remaining
    /// lines of output.
    std::vector<std::string> AwaitEnd() const
    {
        std::vector<std::string> lines;
        for (std::string line = m_program.ReadLine(); !line.empty(); line = m_program.ReadLine())
            lines.push_back(line);
        return lines;
    }

    int GetProcessId() const { return m_program.GetProcessId(); }
    void Send(int signal) const { m_program.Send(signal); }
    int WaitForExitCode() { return m_program.WaitForExitCode(); }

    const std::string& Socket() const { return m_socket; }

private:
    ChildProgram m_program;
    std::string m_socket;
};

} // namespace Toolkit::TestSupport
