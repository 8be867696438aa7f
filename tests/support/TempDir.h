#pragma once

#include "toolkit/core/TString.h"

#include <filesystem>
#include <string>

namespace Toolkit::TestSupport {

/// A private directory for one test. The destructor removes it with its contents.
class TempDir {
public:
    TempDir();
    ~TempDir();

    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

    /// Returns the path of `name` in the directory, or of the directory itself if `name` is empty.
    TString<wchar_t> File(const TString<wchar_t>& name) const;

    /// Writes `bytes` to `name` and returns its path.
    TString<wchar_t> WriteFile(const TString<wchar_t>& name, const std::string& bytes) const;

    /// Returns the bytes of `name`; empty if it cannot be read.
    std::string ReadFile(const TString<wchar_t>& name) const;

private:
    std::filesystem::path m_path;
};

/// Returns the bytes of a file; empty if it cannot be read.
std::string ReadWholeFile(const std::filesystem::path& path);

} // namespace Toolkit::TestSupport
