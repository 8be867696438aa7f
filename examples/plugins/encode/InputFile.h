#pragma once

#include <string>
#include <toolkit/files/FFile.h>

#include "PlugIn.h"

/// Reads the file that a command's option "in" names, block by block, and tells the host how far it
/// has come.
class InputFile {
public:
    explicit InputFile(HostPlugIn::CommandRun& run);

    /// False when the file cannot be opened, which the host is told.
    bool Open();

    /// Replaces `block` by the next `size` bytes; by fewer of them at the end of the file. False
    /// behind the end and when the command has failed.
    bool Read(std::string& block, unsigned int size);

    /// Whether the last Read() was false since all was read.
    bool IsAtEnd() const { return m_isAtEnd; }

private:
    HostPlugIn::CommandRun& m_run;
    Toolkit::FFile m_file;
    unsigned long long m_length = 0;
    bool m_isAtEnd = false;
};
