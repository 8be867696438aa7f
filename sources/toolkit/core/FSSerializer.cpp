#include "toolkit/core/FSSerializer.h"

namespace Toolkit {

FSSerializer::FSSerializer(const TString<wchar_t>& path, OpenMode mode)
    : m_stream(path, static_cast<FSStream::OpenMode>(mode))
{
}

FSSerializer::~FSSerializer() = default;

IStream& FSSerializer::GetStream() const
{
    return m_stream;
}

} // namespace Toolkit
