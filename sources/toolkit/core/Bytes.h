#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/ISerialize.h"

namespace Toolkit {

/// Owns a block of raw bytes, and copies what goes in and what comes out.
///
/// Share it as `smart_ptr<Bytes>`. One thread at a time may change an object; any number of threads
/// may read it.
class TOOLKIT_API Bytes : public ISerialize {
public:
    Bytes();

    /// A copy of `size` bytes; empty for a null `source`, for a size of 0 and when out of memory.
    Bytes(const unsigned char* source, unsigned int size);
    ~Bytes() override;

    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    /// Replaces the contents. Refuses a null `source` or a size of 0: returns false and keeps the
    /// old contents, so this cannot empty an object. When out of memory, returns false and is
    /// empty.
    bool SetBytes(const unsigned char* source, unsigned int size);

    /// Stores a copy of the contents in `*out`. The caller frees it with delete[].
    ///
    /// `*out` must be null or the array of an earlier call, which is freed before the copy is made.
    /// When there are no contents, returns false and leaves `*out` and `*outSize` alone.
    bool GetBytes(unsigned char** out, unsigned int* outSize) const;

    /// Frees the array `*target`, unless it is null, and replaces it by a copy of `size` bytes.
    ///
    /// When a pointer is null or `size` is 0, returns false and changes nothing. When out of
    /// memory, returns false with a null `*target` and a size of 0. `source` must not point into
    /// `*target`.
    bool CopyBytes(const unsigned char* source, unsigned int size, unsigned char** target,
                   unsigned int* targetSize) const;

    /// Writes the size and the bytes; 0x10000002 when the stream fails.
    ///
    /// An empty object writes nothing at all and returns `StreamResult::Nothing`. It cannot be read
    /// back, because reading expects at least a size.
    unsigned int Serialize(IStream& stream) const override;

    /// Reads a size and that many bytes in place of the contents; 0x10000003 when the stream fails
    /// or there is no memory.
    ///
    /// The old contents stay when no size can be read, and are gone in every other case. After a
    /// failure the bytes that came are kept, followed by zeros for the missing ones. A size larger
    /// than the whole stream is not trusted: the array is then at most twice as long as what came,
    /// or 64 KiB.
    unsigned int Deserialize(IStream& stream) override;

private:
    void Free();
    bool Grow(unsigned int size);
    unsigned int ReadBlock(IStream& stream, unsigned int size);

    unsigned char* m_data = nullptr;
    unsigned int m_size = 0; // 0 exactly when m_data is null
};

} // namespace Toolkit
