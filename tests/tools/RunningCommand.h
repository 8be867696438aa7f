#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Toolkit::TestSupport {

/// Runs the command `toolkit` with standard output and standard error in one pipe. The destructor
/// kills the process if it has not been waited for.
class RunningCommand {
public:
    explicit RunningCommand(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), TOOLKIT_COMMAND);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);

        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
        EXPECT_EQ(
            ::posix_spawn(&m_process, TOOLKIT_COMMAND, &actions, nullptr, pointers.data(), environ),
            0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        m_output = ends[0];
    }

    ~RunningCommand()
    {
        if (m_process > 0)
            SignalAndWait(SIGKILL);
        CloseOutput();
    }

    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    /// Reads until the output contains `text`. Returns all output since the start. Fails at the end
    /// of the output, and if nothing is written for ten seconds.
    const std::string& ReadUntil(const std::string& text)
    {
        constexpr int timeoutMs = 10000;

        while (m_text.find(text) == std::string::npos) {
            pollfd output{m_output, POLLIN, 0};
            char bytes[4096];
            const bool isReady = ::poll(&output, 1, timeoutMs) == 1;
            const ssize_t count = isReady ? ::read(m_output, bytes, sizeof bytes) : 0;
            if (count <= 0) {
                ADD_FAILURE() << "not written: " << text << "\nactual output: " << m_text;
                break;
            }
            m_text.append(bytes, static_cast<std::size_t>(count));
        }
        return m_text;
    }

    /// Closes the reading end of the pipe.
    void CloseOutput()
    {
        if (m_output >= 0)
            ::close(m_output);
        m_output = -1;
    }

    /// Sends `signal` and waits until the process ends. Returns the exit code, or minus the number
    /// of the signal that ended the process.
    int SignalAndWait(int signal)
    {
        ::kill(m_process, signal);
        return Wait();
    }

    int Wait()
    {
        int status = 0;
        ::waitpid(m_process, &status, 0);
        m_process = 0;
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

    pid_t GetProcessId() const { return m_process; }

private:
    pid_t m_process = 0;
    int m_output = -1;
    std::string m_text;
};

} // namespace Toolkit::TestSupport
