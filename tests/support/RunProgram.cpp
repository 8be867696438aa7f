#include "support/RunProgram.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Toolkit::TestSupport {
namespace {

// Redirects a descriptor of the started program to a file.
void RedirectToFile(posix_spawn_file_actions_t& actions, int descriptor,
                    const std::filesystem::path& file)
{
    constexpr mode_t permissions = 0600;
    ::posix_spawn_file_actions_addopen(&actions, descriptor, file.c_str(), O_WRONLY | O_CREAT,
                                       permissions);
}

int WaitForExitCode(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, 0) == -1 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

ProgramResult RunProgram(const std::filesystem::path& program,
                         const std::vector<std::string>& arguments)
{
    std::vector<std::string> argumentStrings = {program.native()};
    argumentStrings.insert(argumentStrings.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& argument : argumentStrings)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    const TempDir directory;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    RedirectToFile(actions, STDOUT_FILENO, directory.Path() / "output");
    RedirectToFile(actions, STDERR_FILENO, directory.Path() / "errors");
    pid_t process = 0;
    const int error =
        ::posix_spawn(&process, program.c_str(), &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(error, 0) << "cannot start " << program;
    if (error != 0)
        return {error, {}, {}};

    const int exitCode = WaitForExitCode(process);
    return {exitCode, directory.ReadFile(L"output"), directory.ReadFile(L"errors")};
}

} // namespace Toolkit::TestSupport
