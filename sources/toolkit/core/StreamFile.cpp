#include "toolkit/core/StreamFile.Private.h"

#include <algorithm>
#include <fcntl.h>
#include <new>

namespace Toolkit {
namespace {

constexpr std::size_t c_bufferSize = 65536;

} // namespace

StreamFile::StreamFile(const std::string& name, int flags)
    : m_file(Base::FileDescriptor::Open(name, flags)),
      // Other readers of a pipe would miss what is read ahead.
      m_readsAhead((flags & O_ACCMODE) == O_RDONLY && m_file.IsRegular())
{
}

// Moves up to `size` of the bytes that were read ahead to `data` and returns how many.
std::size_t StreamFile::CopyBuffered(char* data, std::size_t size)
{
    const std::size_t count = std::min(size, m_end - m_begin);
    if (count > 0)
        std::memcpy(data, m_buffer.get() + m_begin, count);
    m_begin += count;
    return count;
}

// Refills the buffer, which must be empty; returns false at the end of the file or after an error.
bool StreamFile::RefillBuffer()
{
    const ssize_t count = m_file.Read(m_buffer.get(), c_bufferSize);
    m_begin = 0;
    m_end = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    return count > 0;
}

bool StreamFile::ReadBeyondBuffer(char* data, std::size_t size)
{
    const std::size_t taken = CopyBuffered(data, size);
    data += taken;
    size -= taken;
    if (m_readsAhead && !m_buffer)
        m_buffer.reset(new (std::nothrow) char[c_bufferSize]);
    if (!m_buffer || size >= c_bufferSize)
        return m_file.ReadAll(data, size);

    while (size > 0 && RefillBuffer()) {
        const std::size_t count = CopyBuffered(data, size);
        data += count;
        size -= count;
    }
    return size == 0;
}

} // namespace Toolkit
