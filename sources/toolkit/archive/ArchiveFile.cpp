#include "toolkit/archive/ArchiveFile.Private.h"

#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

constexpr std::size_t c_bufferSize = 16384;

} // namespace

ArchiveFile::ArchiveFile(Base::FileDescriptor file) : m_file(std::move(file))
{
    if (m_file.IsOpen())
        m_length = ::lseek(m_file.Get(), 0, SEEK_END);
    else
        Reset(wxSTREAM_READ_ERROR);
}

std::size_t ArchiveFile::OnSysRead(void* buffer, std::size_t size)
{
    if (!m_file.IsOpen())
        return 0;
    const bool isBuffered = m_position >= m_bufferBegin &&
                            m_position < m_bufferBegin + static_cast<wxFileOffset>(m_buffer.size());
    std::size_t count = 0;
    if (!isBuffered && size >= c_bufferSize) {
        count = ReadFile(static_cast<char*>(buffer), size);
    } else {
        if (!isBuffered) {
            m_buffer.resize(c_bufferSize);
            m_buffer.resize(ReadFile(m_buffer.data(), c_bufferSize));
            m_bufferBegin = m_position;
        }
        count = m_buffer.copy(static_cast<char*>(buffer), size,
                              static_cast<std::size_t>(m_position - m_bufferBegin));
    }
    m_position += static_cast<wxFileOffset>(count);
    return count;
}

wxFileOffset ArchiveFile::OnSysSeek(wxFileOffset offset, wxSeekMode mode)
{
    if (!IsSeekable())
        return wxInvalidOffset;
    if (mode == wxFromCurrent)
        offset += m_position;
    else if (mode == wxFromEnd)
        offset += m_length;
    if (offset < 0)
        return wxInvalidOffset;
    m_position = offset;
    return m_position;
}

// Reads at the current position. If nothing is read, sets the stream's state to end of file or
// error.
std::size_t ArchiveFile::ReadFile(char* buffer, std::size_t size)
{
    const ssize_t count =
        IsSeekable() ? m_file.ReadAt(m_position, buffer, size) : m_file.Read(buffer, size);
    if (count > 0)
        return static_cast<std::size_t>(count);
    m_lasterror = count == 0 ? wxSTREAM_EOF : wxSTREAM_READ_ERROR;
    return 0;
}

} // namespace Toolkit
