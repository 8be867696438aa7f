#include "toolkit/core/Bytes.h"

#include "toolkit/core/IStream.h"
#include "toolkit/core/StreamResult.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

namespace Toolkit {
namespace {

// On failure, Serialize() and Deserialize() return these codes, whatever code the stream returned.
constexpr unsigned int c_writeFailed = StreamResult::NotOpen;
constexpr unsigned int c_readFailed = StreamResult::DataFailed;

// Blocks of up to this many bytes are allocated in one step. So are longer ones that fit into the
// stream; others grow as their bytes are read.
constexpr unsigned int c_trustedSize = 64 * 1024;

} // namespace

Bytes::Bytes() = default;

Bytes::Bytes(const unsigned char* source, unsigned int size)
{
    CopyBytes(source, size, &m_data, &m_size);
}

Bytes::~Bytes()
{
    Free();
}

bool Bytes::SetBytes(const unsigned char* source, unsigned int size)
{
    return CopyBytes(source, size, &m_data, &m_size);
}

bool Bytes::GetBytes(unsigned char** out, unsigned int* outSize) const
{
    return CopyBytes(m_data, m_size, out, outSize);
}

bool Bytes::CopyBytes(const unsigned char* source, unsigned int size, unsigned char** target,
                      unsigned int* targetSize) const
{
    if (!source || size == 0 || !target || !targetSize)
        return false;
    delete[] * target;
    *target = new (std::nothrow) unsigned char[size];
    *targetSize = *target ? size : 0;
    if (*target)
        std::memcpy(*target, source, size);
    return *target != nullptr;
}

unsigned int Bytes::Serialize(IStream& stream) const
{
    if (m_size == 0 || !m_data)
        return StreamResult::Nothing;
    if (StreamResult::Failed(stream.Write(m_size)))
        return c_writeFailed;
    if (StreamResult::Failed(stream.Write(m_data, m_size)))
        return c_writeFailed;
    return StreamResult::Ok;
}

unsigned int Bytes::Deserialize(IStream& stream)
{
    unsigned int size = 0;
    if (StreamResult::Failed(stream.Read(size)))
        return c_readFailed;
    Free();
    if (size == 0)
        return StreamResult::Ok;
    if (size <= c_trustedSize || size <= stream.Length())
        return ReadBlock(stream, size);

    while (m_size < size) {
        // Doubles the length each time, so that the total copying stays linear.
        const unsigned int step = std::min(size - m_size, std::max(c_trustedSize, m_size));
        const unsigned int result = ReadBlock(stream, step);
        if (result != StreamResult::Ok)
            return result;
    }
    return StreamResult::Ok;
}

void Bytes::Free()
{
    delete[] m_data;
    m_data = nullptr;
    m_size = 0;
}

// Appends `size` zero bytes; returns false when out of memory.
bool Bytes::Grow(unsigned int size)
{
    auto* const data = new (std::nothrow) unsigned char[std::size_t{m_size} + size]();
    if (!data)
        return false;
    if (m_data)
        std::memcpy(data, m_data, m_size);
    delete[] m_data;
    m_data = data;
    m_size += size;
    return true;
}

// Appends the stream's next `size` bytes.
unsigned int Bytes::ReadBlock(IStream& stream, unsigned int size)
{
    const unsigned int oldSize = m_size;
    if (!Grow(size) || StreamResult::Failed(stream.Read(m_data + oldSize, size)))
        return c_readFailed;
    return StreamResult::Ok;
}

} // namespace Toolkit
