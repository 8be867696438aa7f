#pragma once

#include <string>
#include <toolkit/core/TString.h>

#include "Descriptor.h"
#include "Failure.h"

namespace Tool {

/// Converts a command-line argument from UTF-8. Throws a `Failure` if it is not UTF-8.
TString<wchar_t> ToWideArgument(const std::string& argument);

/// The path of an input file, which may be a copy of standard input.
class InputPath {
public:
    /// If `argument` is "-", copies standard input to a temporary file. Throws a `Failure` if it
    /// cannot.
    explicit InputPath(const std::string& argument);

    /// Returns the path to pass to the library.
    const TString<wchar_t>& Wide() const { return m_wide; }

    /// Returns the path to pass to system calls. It may be valid in this process only.
    const std::string& Path() const { return m_path; }

    /// Returns the argument itself, for messages.
    const std::string& Argument() const { return m_argument; }

private:
    std::string m_argument;
    Descriptor m_standardInput;
    std::string m_path;
    TString<wchar_t> m_wide;
};

/// Returns a failure for a file that the library could not read; tries to read it to find out why.
Failure MakeReadFailure(const InputPath& path);

} // namespace Tool
