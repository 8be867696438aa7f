#pragma once

#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// A program to be started. Its arguments are made ready before the process is split: in the child
/// of a process with several threads nothing may be allocated.
class ChildProcess {
public:
    ChildProcess(const TString<wchar_t>& path, const TString<wchar_t>& arguments);

    /// What `SystemInfo::StartProcess` returns.
    int Start(bool wait) const;

private:
    [[noreturn]] void ExecuteInChild() const;

    std::vector<TString<char>> m_texts;
    std::vector<char*> m_arguments; // ends with a null pointer
};

} // namespace Toolkit
