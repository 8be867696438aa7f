#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <wx/stream.h>

#include <string>

namespace Toolkit {

/// A file as a wxInputStream, for a reader that seeks before each of many short reads.
///
/// ZipList: wxFileInputStream, which makes a system call for each seek and each read, takes 1.9
/// times as long.
class ArchiveFile : public wxInputStream {
public:
    /// If `file` is not open, every read fails.
    explicit ArchiveFile(Base::FileDescriptor file);

    /// False for a pipe, and if the file is not open.
    bool IsSeekable() const override { return m_length != wxInvalidOffset; }

    /// Returns the length that the file had at construction; wxInvalidOffset if not seekable.
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
    std::string m_buffer; // the part of the file that begins at m_bufferBegin
    wxFileOffset m_bufferBegin = 0;
};

} // namespace Toolkit
