#pragma once

#include <string>
#include <toolkit/files/FFile.h>

#include "PlugIn.h"

/// Reads the file that a command's option "in" names, block by block, and reports its progress to
/// the host.
class InputFile {
public:
    explicit InputFile(HostPlugIn::CommandRun& run);

    /// False, after a call of CommandRun::Fail(), when the file cannot be opened.
    bool Open();

    /// Replaces `block` by the next `size` bytes; by fewer of them at the end of the file. False
    /// after the end and when the command has failed.
    bool Read(std::string& block, unsigned int size);

    /// Whether the last Read() was false because the file has ended.
    bool IsAtEnd() const { return m_isAtEnd; }

private:
    HostPlugIn::CommandRun& m_run;
    Toolkit::FFile m_file;
    unsigned long long m_length = 0;
    bool m_isAtEnd = false;
};
