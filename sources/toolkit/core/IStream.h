#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// A sequence of wide strings, unsigned integers and raw blocks.
///
/// Items carry no type: read them in the order in which they were written. Reads and writes return
/// a code of `StreamResult`.
class TOOLKIT_API IStream {
public:
    virtual ~IStream();

    virtual unsigned int Write(const TString<wchar_t>& text) = 0;
    virtual unsigned int Write(unsigned int value) = 0;
    virtual unsigned int Write(const void* data, unsigned int size) = 0;

    virtual unsigned int Read(TString<wchar_t>& text) = 0;
    virtual unsigned int Read(unsigned int& value) = 0;
    virtual unsigned int Read(void* data, unsigned int size) = 0;

    /// Returns the size of the whole stream in bytes.
    virtual unsigned int Length() const = 0;
};

} // namespace Toolkit
