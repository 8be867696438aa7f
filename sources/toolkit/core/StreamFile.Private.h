#pragma once

#include "toolkit/base/FileDescriptor.h"

#include <cstddef>
#include <string>

namespace Toolkit {

/// The file of an `FSStream`.
class StreamFile {
public:
    /// Opens `name` with the flags of open(2).
    StreamFile(const std::string& name, int flags);

    bool IsOpen() const { return m_file.IsOpen(); }

    /// Reads `size` bytes; false when fewer are left, which `data` then begins with.
    bool Read(void* data, std::size_t size);

    /// Writes `size` bytes; false when the system takes fewer.
    bool Write(const void* data, std::size_t size);

    long long GetLength() const { return m_file.GetLength(); }

private:
    Base::FileDescriptor m_file;
};

} // namespace Toolkit
