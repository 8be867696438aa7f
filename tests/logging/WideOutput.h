#pragma once

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace Toolkit::TestSupport {

/// Captures what is written to std::wcout while the object exists.
class CapturedWideOutput {
public:
    CapturedWideOutput() : m_oldBuffer(std::wcout.rdbuf(&m_buffer)) {}
    ~CapturedWideOutput() { std::wcout.rdbuf(m_oldBuffer); }

    CapturedWideOutput(const CapturedWideOutput&) = delete;
    CapturedWideOutput& operator=(const CapturedWideOutput&) = delete;

    std::wstring Text() const { return m_buffer.str(); }
    int FlushCount() const { return m_buffer.flushCount; }

private:
    struct Buffer : std::wstringbuf {
        int sync() override
        {
            ++flushCount;
            return 0;
        }

        int flushCount = 0;
    };

    Buffer m_buffer;
    std::wstreambuf* m_oldBuffer;
};

/// Runs `action` in a forked child and returns the bytes that it writes to standard output. The
/// child reopens stdout: GoogleTest has already written narrow text to the inherited one, so wide
/// output to it would fail.
inline std::string CaptureOutputOfChild(const std::function<void()>& action)
{
    const TempDir directory;
    const std::string path = (directory.Path() / "output").native();

    const pid_t child = ::fork();
    if (child == 0) {
        const bool isOpen = std::freopen(path.c_str(), "w", stdout) != nullptr;
        action();
        std::wcout.flush();
        std::fflush(stdout);
        ::_exit(isOpen ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    return ReadWholeFile(path);
}

} // namespace Toolkit::TestSupport
