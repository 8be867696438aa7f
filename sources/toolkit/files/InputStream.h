#pragma once

#include "toolkit/core/Export.h"

class wxInputStream;

namespace Toolkit {

/// Owns a byte stream of the framework, for classes that read from it in their own way.
class TOOLKIT_API InputStream {
public:
    /// Takes `stream` over, which may be null.
    explicit InputStream(wxInputStream* stream);
    virtual ~InputStream();

    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

protected:
    /// What is owned: a byte stream here, what a derived class stores in classes that delete it
    /// themselves and leave null behind.
    void* m_stream;
};

} // namespace Toolkit
