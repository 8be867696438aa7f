#include "toolkit/core/StreamFile.Private.h"

namespace Toolkit {

StreamFile::StreamFile(const std::string& name, int flags)
    : m_file(Base::FileDescriptor::Open(name, flags))
{
}

bool StreamFile::Read(void* data, std::size_t size)
{
    return m_file.ReadAll(data, size);
}

bool StreamFile::Write(const void* data, std::size_t size)
{
    return m_file.WriteAll(data, size);
}

} // namespace Toolkit
