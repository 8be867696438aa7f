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

/// Tests commands of an installed host that has all plug-ins, with a directory for the files that
/// the commands read and write.
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

    /// Writes an archive of two files. Three of their lines contain "fog", one of them as "Fog".
    /// The last line of one.txt has no line end.
    std::string WriteArchive() const
    {
        const std::string path = File("texts.zip");
        WriteZip(m_directory.File(L"texts.zip"), {{L"one.txt", "fog\nclear\nFog again"},
                                                  {L"folder/", ""},
                                                  {L"folder/two.txt", "no\r\nfog\r\n"}});
        return path;
    }

    /// Hands over a command that writes its result to the file "result"; does not wait for it.
    void HandOver(Arguments arguments) const
    {
        arguments.insert(arguments.end(), {"-out", File("result")});
        const ProgramResult result = m_host.Run(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_EQ(result.output, c_handedOver);
    }

    /// Hands over a command, waits until it succeeds and returns the bytes of its result.
    std::string RunForResult(const ServingHost& host, const Arguments& arguments)
    {
        HandOver(arguments);
        EXPECT_THAT(host.AwaitOutcome(std::to_string(++m_commandCount) + " " + arguments[0]),
                    testing::StartsWith("done in "));
        return ReadWholeFile(File("result"));
    }

    /// Hands over a command, waits until it ends and returns the outcome that the host shows.
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
    int m_commandCount = 0;
};

} // namespace Toolkit::TestSupport
