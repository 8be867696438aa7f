#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Toolkit::TestSupport {

/// Runs a program whose output is a terminal. The destructor sends SIGTERM to the program and waits
/// until it has ended.
class ProgramOnTerminal {
public:
    ProgramOnTerminal(const std::string& program, std::vector<std::string> arguments)
        : m_terminal(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        EXPECT_EQ(::grantpt(m_terminal), 0);
        EXPECT_EQ(::unlockpt(m_terminal), 0);
        const std::string name = ::ptsname(m_terminal);
        arguments.insert(arguments.begin(), program);
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);

        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&actions, descriptor, name.c_str(),
                                               O_WRONLY | O_NOCTTY, 0);
        EXPECT_EQ(
            ::posix_spawn(&m_process, program.c_str(), &actions, nullptr, pointers.data(), environ),
            0);
        ::posix_spawn_file_actions_destroy(&actions);
    }

    ~ProgramOnTerminal()
    {
        if (m_process > 0) {
            ::kill(m_process, SIGTERM);
            ::waitpid(m_process, nullptr, 0);
        }
        ::close(m_terminal);
    }

    ProgramOnTerminal(const ProgramOnTerminal&) = delete;
    ProgramOnTerminal& operator=(const ProgramOnTerminal&) = delete;

    /// Reads until the output contains `text`. Returns all output since the program started. Fails
    /// the test if the output ends first.
    const std::string& ReadUntil(const std::string& text)
    {
        char byte = 0;
        while (m_output.find(text) == std::string::npos) {
            if (::read(m_terminal, &byte, 1) != 1) {
                ADD_FAILURE() << "the output ended without: " << text;
                break;
            }
            m_output.push_back(byte);
        }
        return m_output;
    }

private:
    const int m_terminal;
    pid_t m_process = 0;
    std::string m_output;
};

} // namespace Toolkit::TestSupport
