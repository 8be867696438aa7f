#pragma once

#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// A program to start. Its arguments are prepared before fork(2), because the child of a
/// multithreaded process must not allocate.
class ChildProcess {
public:
    /// Splits `arguments` like `CmdLineParser::Tokenize`. Throws `std::bad_alloc`.
    ChildProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments);

    /// Starts the program. Returns what `SystemInfo::StartProcess` returns.
    int Start(bool wait) const;

private:
    [[noreturn]] void ExecuteInChild() const;

    std::vector<TString<char>> m_texts; // the path and the arguments, in UTF-8
    std::vector<char*> m_arguments;     // into m_texts, and a null pointer at the end
};

} // namespace Toolkit
