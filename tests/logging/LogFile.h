#pragma once

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/threading/FrameworkHold.h"

#include "support/ScopedEnvironment.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Toolkit::TestSupport {

/// Provides what a `FileLogger` needs: a path manager with a temporary home directory, and a log
/// name that no other test uses. The destructor removes the files in /tmp whose names begin with
/// the log name.
class LogFileTest : public testing::Test {
protected:
    LogFileTest() : m_homeVariable("HOME", m_home.Path().native())
    {
        static int s_count = 0;
        m_name = "toolkit-test-" + std::to_string(::getpid()) + "-" + std::to_string(s_count++);
        PathManager::CreateInstance();
    }
    ~LogFileTest() override
    {
        PathManager::ReleaseInstance();
        for (const std::filesystem::path& file : FindFiles())
            std::filesystem::remove_all(file);
    }

    TString<wchar_t> Name() const { return UTF8::ToUNICODE(m_name); }
    std::filesystem::path Path() const { return "/tmp/" + m_name + ".qvlog"; }

    /// Returns all files in /tmp whose names begin with `m_name`.
    std::vector<std::filesystem::path> FindFiles() const
    {
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
            if (entry.path().filename().native().compare(0, m_name.size(), m_name) == 0)
                files.push_back(entry.path());
        }
        return files;
    }

    std::string m_name;

private:
    const TempDir m_home;
    const ScopedEnvironment m_homeVariable;
};

/// Polls until `condition` holds; the test fails after two minutes.
inline void Await(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (!condition()) {
        ASSERT_LT(std::chrono::steady_clock::now(), end) << "timed out";
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

/// What the system reports about an open file of this process.
struct OpenFile {
    long position = -1; ///< -1 when the file is not open.
    unsigned int flags = 0;
};

inline OpenFile FindOpenFile(const std::filesystem::path& path)
{
    std::error_code ignored;
    OpenFile file;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        if (std::filesystem::read_symlink(entry.path(), ignored) != path)
            continue;
        std::ifstream info("/proc/self/fdinfo/" + entry.path().filename().native());
        std::string key;
        info >> key >> file.position >> key >> std::oct >> file.flags;
    }
    return file;
}

/// Prevents this process from opening files while the object exists.
class NoDescriptors {
public:
    NoDescriptors()
    {
        // UndefinedBehaviorSanitizer needs descriptors when it first checks the type of wxWidgets'
        // application object, so `second` triggers that check now.
        const FrameworkHold first;
        const FrameworkHold second;
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_oldLimit), 0);
        rlimit none = m_oldLimit;
        none.rlim_cur = 0;
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    }
    ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_oldLimit); }

    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

private:
    rlimit m_oldLimit{};
};

} // namespace Toolkit::TestSupport
