#pragma once

#include "toolkit/core/Export.h"

class wxInputStream;

namespace Toolkit {

/// Owns a `wxInputStream`, for derived classes that read from it in their own way.
class TOOLKIT_API InputStream {
public:
    /// Takes ownership of `stream`, which may be null.
    explicit InputStream(wxInputStream* stream);
    virtual ~InputStream();

    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

protected:
    /// The owned `wxInputStream`. A derived class may store another object here instead; its own
    /// destructor must then delete that object and set this pointer to null.
    void* m_stream;
};

} // namespace Toolkit
