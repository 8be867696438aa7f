#pragma once

#include <string>
#include <toolkit/core/TString.h>

#include "Descriptor.h"
#include "Failure.h"

namespace Tool {

/// An argument of the command line, which is UTF-8. Throws a `Failure` when it is not.
TString<wchar_t> ToWideArgument(const std::string& argument);

/// A file that is read by its path, or standard input.
class InputPath {
public:
    /// Keeps standard input in a file when `argument` is "-". Throws a `Failure`.
    explicit InputPath(const std::string& argument);

    /// The path for the library.
    const TString<wchar_t>& Wide() const { return m_wide; }

    /// The path for this process.
    const std::string& Path() const { return m_path; }

    /// The path as the user gave it, for messages.
    const std::string& Shown() const { return m_argument; }

private:
    std::string m_argument;
    Descriptor m_standardInput;
    std::string m_path;
    TString<wchar_t> m_wide;
};

/// The failure to read a file in which the library gave no reason: finds the reason out.
Failure MakeReadFailure(const InputPath& path);

} // namespace Tool
