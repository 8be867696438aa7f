#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Toolkit::TestSupport {

/// Runs a program while the test reads its output line by line. The destructor kills it.
class ChildProgram {
public:
    ChildProgram(const std::string& program, const std::vector<std::string>& arguments)
    {
        std::vector<std::string> strings = {program};
        strings.insert(strings.end(), arguments.begin(), arguments.end());
        std::vector<char*> pointers;
        for (std::string& string : strings)
            pointers.push_back(string.data());
        pointers.push_back(nullptr);

        int output[2];
        EXPECT_EQ(::pipe2(output, O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        EXPECT_EQ(
            ::posix_spawn(&m_process, program.c_str(), &actions, nullptr, pointers.data(), environ),
            0);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(output[1]);
        m_output = ::fdopen(output[0], "r");
    }

    ~ChildProgram()
    {
        Send(SIGKILL);
        WaitForExitCode();
        std::fclose(m_output);
    }

    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    /// Reads the next line and returns it without its line feed; empty at the end of the output.
    std::string ReadLine() const
    {
        std::string line;
        for (int c = std::getc(m_output); c != EOF && c != '\n'; c = std::getc(m_output))
            line.push_back(static_cast<char>(c));
        return line;
    }

    void Send(int signal) const
    {
        if (m_process > 0)
            ::kill(m_process, signal);
    }

    pid_t GetProcessId() const { return m_process; }

    /// Waits for the program to end. Returns its exit code, or the negated number of the signal
    /// that killed it.
    int WaitForExitCode()
    {
        if (m_process > 0) {
            int status = 0;
            ::waitpid(m_process, &status, 0);
            m_process = 0;
            m_exitCode = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
        }
        return m_exitCode;
    }

private:
    pid_t m_process = 0;
    std::FILE* m_output = nullptr;
    int m_exitCode = 0;
};

} // namespace Toolkit::TestSupport
