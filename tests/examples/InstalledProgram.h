#pragma once

#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <pwd.h>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace Toolkit::TestSupport {

/// Installs a copy of a program under a unique name and prefix, so that it shares no log, settings
/// or home directory with another program. The destructor removes the log.
class InstalledProgram {
public:
    explicit InstalledProgram(const std::filesystem::path& program)
        : m_home("HOME", m_prefix.Path().native())
    {
        std::filesystem::create_directories(m_prefix.Path() / "bin");
        std::filesystem::create_directories(ConfigurationPath());
        std::filesystem::copy_file(program, Path());
    }
    ~InstalledProgram()
    {
        std::error_code ignored;
        std::filesystem::remove(LogPath(), ignored);
    }

    /// The name of the copy, which is also the name of the prefix in the temporary directory.
    std::string Name() const { return m_prefix.Path().filename(); }
    std::filesystem::path ConfigurationPath() const
    {
        return m_prefix.Path() / "share" / Name() / "config";
    }
    std::filesystem::path PlugInsPath() const
    {
        return m_prefix.Path() / "share" / Name() / "ressources" / "plugins";
    }
    void InstallPlugIn(const std::filesystem::path& library) const
    {
        std::filesystem::create_directories(PlugInsPath());
        std::filesystem::copy_file(library, PlugInsPath() / library.filename());
    }
    /// Returns the unique name that the library gives this program: its path and the user's name in
    /// lower case, without slashes.
    std::string UniqueName() const
    {
        std::string name = m_prefix.Path() / "bin" / Name();
        name += ::getpwuid(::geteuid())->pw_name;
        name.erase(std::remove(name.begin(), name.end(), '/'), name.end());
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char character) {
            return static_cast<char>(std::tolower(character));
        });
        return name;
    }
    std::filesystem::path LogPath() const { return "/tmp/" + UniqueName() + ".qvlog"; }
    std::string Log() const { return ReadWholeFile(LogPath()); }

    std::filesystem::path Path() const { return m_prefix.Path() / "bin" / Name(); }
    ProgramResult Run(const std::vector<std::string>& arguments) const
    {
        return RunProgram(Path(), arguments);
    }

private:
    TempDir m_prefix;
    ScopedEnvironment m_home;
};

} // namespace Toolkit::TestSupport
