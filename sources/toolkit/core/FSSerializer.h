#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/Serializer.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Joins objects to a named file.
///
/// A file that cannot be opened shows in the first transfer.
class TOOLKIT_API FSSerializer : public Serializer {
public:
    enum OpenMode : int { OpenRead = FSStream::OpenRead, OpenWrite = FSStream::OpenWrite };

    FSSerializer(const TString<wchar_t>& path, OpenMode mode);
    ~FSSerializer() override;

    /// Its own `FSStream`.
    IStream& GetStream() const override;

private:
    // What moves in the stream is the file's position, which is no part of this object's state.
    mutable FSStream m_stream;
};

} // namespace Toolkit
