#pragma once

#include "support/RunProgram.h"
#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// Fixture for tests of the command `toolkit`, with a temporary home directory, a temporary
/// directory for files, and the time zone UTC.
class ToolFixture : public testing::Test {
protected:
    static ProgramResult Run(const std::vector<std::string>& arguments)
    {
        return RunProgram(TOOLKIT_COMMAND, arguments);
    }

    /// Runs `line` in /bin/sh, with $toolkit set to the command and $dir to the directory for
    /// files.
    ProgramResult RunInShell(const std::string& line) const
    {
        return RunProgram("/bin/sh", {"-c", "toolkit='" TOOLKIT_COMMAND "' dir='" +
                                                m_directory.Path().native() + "'; " + line});
    }

    /// Writes a file into the directory and returns its path.
    std::string Write(const TString<wchar_t>& name, const std::string& bytes) const
    {
        m_directory.WriteFile(name, bytes);
        return m_directory.Path() / std::filesystem::path(std::wstring(name));
    }

    std::string PathOf(const std::string& name) const { return m_directory.Path() / name; }

    const TempDir m_directory;

private:
    const TempDir m_homeDirectory;
    const ScopedEnvironment m_home{"HOME", m_homeDirectory.Path().native()};
    const ScopedEnvironment m_zone{"TZ", "UTC"};
};

} // namespace Toolkit::TestSupport
