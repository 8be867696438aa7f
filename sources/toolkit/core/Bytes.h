#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/ISerialize.h"

namespace Toolkit {

/// Owns a block of raw bytes; what goes in and what comes out is copied.
///
/// A value is shared as `smart_ptr<Bytes>` and not copied. One object is used by one thread at a
/// time; any number of threads may read it together.
class TOOLKIT_API Bytes : public ISerialize {
public:
    Bytes();

    /// A copy of `size` bytes; empty for a null `source` or a size of 0.
    Bytes(const unsigned char* source, unsigned int size);
    ~Bytes() override;

    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    /// Replaces the contents. A null `source` or a size of 0 is refused: false, the old contents
    /// stay, and so a value cannot be emptied. False as well, and empty, when there is no memory.
    bool SetBytes(const unsigned char* source, unsigned int size);

    /// Gives a copy of the contents to the caller, who frees it with delete[].
    ///
    /// `*out` must be null or an array of an earlier call, which is freed before the copy is made.
    /// False when there are no contents: `*out` and `*outSize` are left alone.
    bool GetBytes(unsigned char** out, unsigned int* outSize) const;

    /// Frees the array `*target`, unless it is null, and replaces it by a copy of `size` bytes.
    ///
    /// False, and nothing is changed, when a pointer is null or `size` is 0. False, with a null
    /// `*target` and a size of 0, when there is no memory. `source` must not lie in `*target`.
    bool CopyBytes(const unsigned char* source, unsigned int size, unsigned char** target,
                   unsigned int* targetSize) const;

    /// Writes the size and the bytes; 0x10000002 when the stream fails.
    ///
    /// An empty value writes nothing at all and returns `StreamResult::Nothing`; it cannot be read
    /// back, since reading expects at least a size.
    unsigned int Serialize(IStream& stream) const override;

    /// Reads a size and that many bytes in place of the contents; 0x10000003 when the stream fails
    /// or there is no memory.
    ///
    /// The old contents stay when there is no size to be read and are gone in every other case.
    /// Bytes that came before a failure are kept, with zeros behind them for those that did not
    /// come. A size that the whole stream could not hold is not believed: the array is then at most
    /// twice as long as what came, or 64 KiB.
    unsigned int Deserialize(IStream& stream) override;

private:
    void Free();
    bool Grow(unsigned int size);
    unsigned int ReadBlock(IStream& stream, unsigned int size);

    unsigned char* m_data = nullptr;
    unsigned int m_size = 0; // 0 exactly when m_data is null
};

} // namespace Toolkit
