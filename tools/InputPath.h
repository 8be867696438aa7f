#pragma once

#include <string>
#include <toolkit/core/TString.h>

#include "Descriptor.h"
#include "Failure.h"

namespace Tool {

/// Converts `argument` to a wide string. Throws a `Failure` if it is not UTF-8.
TString<wchar_t> ToWideArgument(const std::string& argument);

/// The path of an input file, or of a temporary copy of standard input. The path of the copy is
/// valid only in this process and while the object exists.
class InputPath {
public:
    /// If `argument` is "-", copies standard input. Throws a `Failure` if that fails, and if
    /// `argument` is not UTF-8.
    explicit InputPath(const std::string& argument);

    /// Returns the path to pass to the library.
    const TString<wchar_t>& GetWide() const { return m_wide; }

    /// Returns the path to pass to system calls.
    const std::string& GetPath() const { return m_path; }

    /// Returns the argument itself, for messages.
    const std::string& GetArgument() const { return m_argument; }

private:
    std::string m_argument;
    Descriptor m_standardInput;
    std::string m_path;
    TString<wchar_t> m_wide;
};

/// Returns a failure for a file that the library could not read, with the system's reason if the
/// system cannot read it either.
Failure MakeReadFailure(const InputPath& path);

} // namespace Tool
