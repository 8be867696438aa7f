#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "InstalledProgram.h"
#include "ServingHost.h"
#include "archive/ZipWriter.h"

namespace Toolkit::TestSupport {

using Arguments = std::vector<std::string>;

/// What the host prints after it has handed its command line to a serving host.
constexpr const char* c_handedOver = "Handed over to the serving host.\n";

/// Fixture with an installed host and a directory for the files that commands read and write. The
/// host has the example plug-ins and OddCommands, whose commands misbehave.
class HostWithPlugIns : public testing::Test {
protected:
    HostWithPlugIns()
    {
        std::ofstream(m_host.ConfigurationPath() / "host.ini") << "[Log]\nlevel=2\n";
        for (const char* const library :
             {ARCHIVE_PLUG_IN, ENCODE_PLUG_IN, FIND_PLUG_IN, ODD_COMMANDS_PLUG_IN})
            m_host.InstallPlugIn(library);
    }

    std::string File(const std::string& name) const { return m_directory.Path() / name; }

    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::filesystem::create_directories(std::filesystem::path(File(name)).parent_path());
        std::ofstream(File(name), std::ios::binary) << bytes;
        return File(name);
    }

    /// Writes texts.zip, an archive of two files and a directory, and returns its path. Two lines
    /// contain "fog" and one contains "Fog". one.txt does not end with a newline.
    std::string WriteArchive() const
    {
        WriteZip(m_directory.File(L"texts.zip"), {{L"one.txt", "fog\nclear\nFog again"},
                                                  {L"folder/", ""},
                                                  {L"folder/two.txt", "no\r\nfog\r\n"}});
        return File("texts.zip");
    }

    /// Hands over a command with "result" as its output file. Returns without waiting for the
    /// command to end.
    void HandOver(Arguments arguments) const
    {
        arguments.insert(arguments.end(), {"-out", File("result")});
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.output, c_handedOver);
    }

    /// Hands over a command, waits until it ends, expects success and returns the contents of its
    /// output file.
    std::string RunForResult(const ServingHost& host, const Arguments& arguments)
    {
        EXPECT_THAT(RunForOutcome(host, arguments), testing::StartsWith("done in "));
        return ReadWholeFile(File("result"));
    }

    /// Hands over a command, waits until it ends and returns the outcome that the host prints.
    std::string RunForOutcome(const ServingHost& host, const Arguments& arguments)
    {
        HandOver(arguments);
        return host.AwaitOutcome(std::to_string(++m_commandCount) + " " + arguments[0]);
    }

    /// Makes the serving host quit, and waits until it has ended.
    void Quit(ServingHost& host) const
    {
        EXPECT_EQ(m_host.Run({"-quit"}).output, c_handedOver);
        host.AwaitEnd();
        EXPECT_EQ(host.WaitForExitCode(), 0);
    }

    std::vector<std::string> ListDirectory() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_directory.Path()))
            names.push_back(entry.path().filename());
        return names;
    }

    const InstalledProgram m_host{HOST_PROGRAM};
    const TempDir m_directory;
    int m_commandCount = 0; // the host numbers its commands from 1
};

} // namespace Toolkit::TestSupport
