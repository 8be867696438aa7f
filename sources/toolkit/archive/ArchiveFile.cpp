#include "toolkit/archive/ArchiveFile.Private.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

constexpr std::size_t c_bufferSize = 16384;

} // namespace

ArchiveFile::ArchiveFile(Base::FileDescriptor file) : m_file(std::move(file))
{
    struct stat status {};
    if (m_file.IsOpen() && ::fstat(m_file.Get(), &status) == 0)
        m_length = status.st_size;
    else
        Reset(wxSTREAM_READ_ERROR);
}

std::size_t ArchiveFile::OnSysRead(void* buffer, std::size_t size)
{
    if (!m_file.IsOpen())
        return 0;
    const bool isAtHand = m_position >= m_bytesBegin &&
                          m_position < m_bytesBegin + static_cast<wxFileOffset>(m_bytes.size());
    std::size_t count = 0;
    if (!isAtHand && size >= c_bufferSize) {
        count = ReadFile(static_cast<char*>(buffer), size);
    } else {
        if (!isAtHand) {
            m_bytes.resize(c_bufferSize);
            m_bytes.resize(ReadFile(m_bytes.data(), c_bufferSize));
            m_bytesBegin = m_position;
        }
        count = m_bytes.copy(static_cast<char*>(buffer), size,
                             static_cast<std::size_t>(m_position - m_bytesBegin));
    }
    m_position += static_cast<wxFileOffset>(count);
    return count;
}

wxFileOffset ArchiveFile::OnSysSeek(wxFileOffset offset, wxSeekMode mode)
{
    if (mode == wxFromCurrent)
        offset += m_position;
    else if (mode == wxFromEnd)
        offset += m_length;
    if (offset < 0)
        return wxInvalidOffset;
    m_position = offset;
    return m_position;
}

// Reads at the position; with nothing read the stream is at its end, or in error.
std::size_t ArchiveFile::ReadFile(char* buffer, std::size_t size)
{
    ssize_t count = 0;
    do {
        count = ::pread(m_file.Get(), buffer, size, m_position);
    } while (count < 0 && errno == EINTR);
    if (count > 0)
        return static_cast<std::size_t>(count);
    m_lasterror = count == 0 ? wxSTREAM_EOF : wxSTREAM_READ_ERROR;
    return 0;
}

} // namespace Toolkit
