#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace Toolkit {

/// The file of an `FSStream`. Reads ahead if the file is regular and open for reading only.
class StreamFile {
public:
    /// Opens `name` with the flags of open(2).
    StreamFile(const std::string& name, int flags);

    bool IsOpen() const { return m_file.IsOpen(); }

    /// Reads `size` bytes; `size` must not be 0. If fewer are left, returns false, and `data`
    /// begins with those.
    bool Read(void* data, std::size_t size)
    {
        // ReadRecords: a system call for each item takes 25 times as long.
        if (size > m_end - m_begin)
            return ReadBeyondBuffer(static_cast<char*>(data), size);
        std::memcpy(data, m_buffer.get() + m_begin, size);
        m_begin += size;
        return true;
    }

    /// Writes `size` bytes; returns false if the system accepts fewer.
    bool Write(const void* data, std::size_t size) { return m_file.WriteAll(data, size); }

    long long GetLength() const { return m_file.GetLength(); }

private:
    std::size_t CopyBuffered(char* data, std::size_t size);
    bool RefillBuffer();
    bool ReadBeyondBuffer(char* data, std::size_t size);

    Base::FileDescriptor m_file;
    bool m_readsAhead;
    // Holds the bytes that were read ahead, from m_begin to m_end. Null until the first read ahead.
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
};

} // namespace Toolkit
