#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/ISerialize.h"

namespace Toolkit {

/// Owns a block of raw bytes, which it copies in and out.
///
/// Share it as `smart_ptr<Bytes>`. Any number of threads may read an object concurrently; while one
/// changes it, no other may use it.
class TOOLKIT_API Bytes : public ISerialize {
public:
    Bytes();

    /// Copies `size` bytes; empty for a null `source`, for a size of 0 and when out of memory.
    Bytes(const unsigned char* source, unsigned int size);
    ~Bytes() override;

    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    /// Replaces the contents. For a null `source` or a size of 0, returns false and keeps the old
    /// contents, so SetBytes() cannot empty an object. When out of memory, returns false and leaves
    /// the object empty.
    bool SetBytes(const unsigned char* source, unsigned int size);

    /// Stores a copy of the contents in `*out`. The caller frees it with delete[].
    ///
    /// `*out` must be null or the array of an earlier call, which is freed before the copy is made.
    /// If the object is empty, or `out` or `outSize` is null, returns false and changes nothing.
    /// When out of memory, returns false with a null `*out` and a size of 0.
    bool GetBytes(unsigned char** out, unsigned int* outSize) const;

    /// Frees the array `*target`, which may be null, and replaces it with a copy of `size` bytes.
    /// Does not use the object.
    ///
    /// If `source`, `target` or `targetSize` is null or `size` is 0, returns false and changes
    /// nothing. When out of memory, returns false with a null `*target` and a size of 0. `source`
    /// must not point into `*target`.
    bool CopyBytes(const unsigned char* source, unsigned int size, unsigned char** target,
                   unsigned int* targetSize) const;

    /// Writes the size and the bytes. Returns 0x10000002 if the stream fails.
    ///
    /// An empty object writes nothing at all and returns `StreamResult::Nothing`. It cannot be read
    /// back, because Deserialize() expects a size.
    unsigned int Serialize(IStream& stream) const override;

    /// Replaces the contents: reads a size and that many bytes. Returns 0x10000003 if the stream
    /// fails or when out of memory.
    ///
    /// If no size can be read, the old contents stay. Once it has been read, they are lost, even on
    /// failure. After a failure, the bytes that were read are kept, followed by zeros for missing
    /// ones. A size larger than the whole stream is not trusted: the array then has at most 64 KiB
    /// or twice the number of bytes read, whichever is more.
    unsigned int Deserialize(IStream& stream) override;

private:
    void Free();
    bool Grow(unsigned int size);
    unsigned int ReadBlock(IStream& stream, unsigned int size);

    unsigned char* m_data = nullptr;
    unsigned int m_size = 0; // 0 exactly when m_data is null
};

} // namespace Toolkit
