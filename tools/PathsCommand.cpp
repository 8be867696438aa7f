#include <CLI/CLI.hpp>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <system_error>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/files/PathManager.h>
#include <toolkit/ipc/IPCServer.h>
#include <toolkit/logging/FileLogger.h>
#include <toolkit/system/SingleApplicationInstance.h>
#include <unistd.h>

#include "Commands.h"
#include "Failure.h"
#include "InputPath.h"
#include "Output.h"
#include "OwnExecutable.h"
#include "PathState.h"

using namespace Toolkit;

namespace Tool {
namespace {

using Text = TString<wchar_t>;

bool IsDirectory(const std::filesystem::path& path)
{
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

// Searches PATH for a name without "/", as the shell does: an empty entry is the working directory.
std::string FindProgram(const std::string& program)
{
    if (program.find('/') != std::string::npos)
        return program;
    const char* const directories = std::getenv("PATH");
    std::istringstream list(directories ? directories : "");
    for (std::string directory; std::getline(list, directory, ':');) {
        std::string path = (directory.empty() ? "." : directory) + "/" + program;
        if (::access(path.c_str(), X_OK) == 0 && !IsDirectory(path))
            return path;
    }
    throw Failure("no program \"" + program + "\" in PATH");
}

// Returns the path with links resolved, as the program itself sees it.
Text FindExecutable(const std::string& program)
{
    const std::string found = program.empty() ? FindOwnExecutable() : FindProgram(program);
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(found, error);
    if (error)
        throw Failure("cannot find " + found + ": " + error.message());
    if (IsDirectory(path))
        throw Failure(program + " is a directory, not a program");
    return ToWideArgument(path.native());
}

Text GetParent(const Text& path)
{
    return path.substr(0, path.rfind(L'/'));
}

// Prints a table of paths, and records whether any of them cannot be used.
class Table {
public:
    explicit Table(Output& output) : m_output(output) {}

    void AddName(const std::string& label, const Text& name)
    {
        WriteLabel(label);
        m_output.WriteVisible(UTF8::ToUTF8(name));
        m_output.Write("\n");
    }

    void AddPath(const std::string& label, const Text& widePath, PathUse use)
    {
        const std::string path = UTF8::ToUTF8(widePath);
        const PathState state = ExaminePath(path, use);
        WriteLabel(label);
        m_output.WriteVisible(path);
        m_output.Write(" (");
        m_output.Write(state.text, state.isGood ? Output::Grey : Output::Red);
        m_output.Write(")\n");
        m_isGood = m_isGood && state.isGood;
    }

    bool IsGood() const { return m_isGood; }

private:
    void WriteLabel(std::string label)
    {
        constexpr std::size_t labelWidth = 16;

        label.resize(labelWidth, ' ');
        m_output.Write(label);
    }

    Output& m_output;
    bool m_isGood = true;
};

int Run(const std::string& program, Output& output)
{
    const PathManager paths(FindExecutable(program));
    const Text& unique = paths.GetApplicationUniqueName();
    const Text temporary = paths.GetTempDir() + paths.GetPathSeparator();
    const Text log = FileLogger::c_strLogExtension;
    const Text lock = SingleApplicationInstance::GetLockPath(unique);

    Table table(output);
    table.AddName("name", paths.GetApplicationName());
    table.AddName("unique name", unique);
    table.AddPath("application", paths.GetApplicationPath(), PathUse::Read);
    // Avoids GetDataDir() and GetUserLocalDataDir(), which return the directories of this process.
    table.AddPath("shared data", GetParent(paths.GetConfigurationPath()), PathUse::Read);
    table.AddPath("configuration", paths.GetConfigurationPath(), PathUse::Read);
    table.AddPath("ressources", paths.GetApplicationRessourcesPath(), PathUse::Read);
    table.AddPath("plug-ins", paths.GetPluginsPath(), PathUse::Read);
    table.AddPath("user data", GetParent(paths.GetApplicationDataPath()), PathUse::WriteDirectory);
    table.AddPath("data", paths.GetApplicationDataPath(), PathUse::WriteDirectory);
    table.AddPath("documents", paths.GetDocumentsPath(), PathUse::WriteDirectory);
    table.AddPath("temporary", paths.GetTempDir(), PathUse::ShareDirectory);
    table.AddPath("lock", lock, PathUse::WriteFile);
    // The lock file that wxSingleInstanceChecker creates in the same directory.
    table.AddPath("wxWidgets lock", GetParent(lock) + L"/" + unique, PathUse::WriteFile);
    table.AddPath("socket", IPCServer::GetSocketPath(temporary + unique + L".ipc"),
                  PathUse::WriteFile);
    table.AddPath("log", temporary + paths.GetApplicationName() + log, PathUse::WriteFile);
    table.AddPath("unique log", temporary + unique + log, PathUse::WriteFile);
    return table.IsGood() ? ExitSuccess : ExitNegative;
}

} // namespace

void AddPathsCommand(CLI::App& app, Action& action)
{
    CLI::App* const paths =
        app.add_subcommand("paths", "Print the directories and files that a program uses");
    const auto program = std::make_shared<std::string>();
    paths->add_option("program", *program,
                      "Path of the program, or its name in PATH (default: toolkit itself)");
    paths->callback([program, &action] {
        action = [program](Output& output) { return Run(*program, output); };
    });
}

} // namespace Tool
