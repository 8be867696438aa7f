#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <wx/stream.h>

#include <string>

namespace Toolkit {

/// A file as a wxInputStream, for a reader that seeks before each of many short reads.
///
/// ZipList: wxFileInputStream, which asks the system again after each seek, takes 1.9 times as
/// long.
class ArchiveFile : public wxInputStream {
public:
    /// Without an open file every read is an error.
    explicit ArchiveFile(Base::FileDescriptor file);

    /// A pipe is not seekable.
    bool IsSeekable() const override { return m_length != wxInvalidOffset; }

    /// The file's length when it was opened: wxWidgets asks before it seeks.
    wxFileOffset GetLength() const override { return m_length; }

protected:
    std::size_t OnSysRead(void* buffer, std::size_t size) override;
    wxFileOffset OnSysSeek(wxFileOffset offset, wxSeekMode mode) override;
    wxFileOffset OnSysTell() const override { return m_position; }

private:
    std::size_t ReadFile(char* buffer, std::size_t size);

    Base::FileDescriptor m_file;
    wxFileOffset m_length = wxInvalidOffset;
    wxFileOffset m_position = 0;
    std::string m_bytes; // what the file contains from m_bytesBegin on
    wxFileOffset m_bytesBegin = 0;
};

} // namespace Toolkit
