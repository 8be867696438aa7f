#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/Serializer.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Connects objects to a named file.
///
/// The first transfer reports a file that cannot be opened.
class TOOLKIT_API FSSerializer : public Serializer {
public:
    enum OpenMode : int { OpenRead = FSStream::OpenRead, OpenWrite = FSStream::OpenWrite };

    FSSerializer(const TString<wchar_t>& path, OpenMode mode);
    ~FSSerializer() override;

    /// Its own `FSStream`.
    IStream& GetStream() const override;

private:
    // Only the position of the file changes, which is not part of this object's state.
    mutable FSStream m_stream;
};

} // namespace Toolkit
