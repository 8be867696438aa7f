#pragma once

#include <string>
#include <toolkit/files/FFile.h>

#include "PlugIn.h"

/// Reads the file that a command's option "in" names, block by block, and reports the progress
/// to the host.
class InputFile {
public:
    explicit InputFile(HostPlugIn::CommandRun& run);

    /// Opens the file. On failure, calls CommandRun::Fail() and returns false.
    bool Open();

    /// Replaces `block` with the next `size` bytes, or fewer at the end of the file. False at the
    /// end of the file, or if the command has failed.
    bool Read(std::string& block, unsigned int size);

    /// Whether the last Read() returned false because it reached the end of the file.
    bool IsAtEnd() const { return m_isAtEnd; }

private:
    HostPlugIn::CommandRun& m_run;
    Toolkit::FFile m_file;
    unsigned long long m_length = 0;
    bool m_isAtEnd = false;
};
