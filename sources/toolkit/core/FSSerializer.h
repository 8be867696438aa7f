#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/Serializer.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Writes objects to a named file, or reads them from it.
///
/// The constructor does not report a file that cannot be opened; all reads and writes then fail.
class TOOLKIT_API FSSerializer : public Serializer {
public:
    enum OpenMode : int { OpenRead = FSStream::OpenRead, OpenWrite = FSStream::OpenWrite };

    FSSerializer(const TString<wchar_t>& path, OpenMode mode);
    ~FSSerializer() override;

    /// Returns the object's own `FSStream`.
    IStream& GetStream() const override;

private:
    // Mutable for GetStream(): the file and its position are not part of this object's state.
    mutable FSStream m_stream;
};

} // namespace Toolkit
