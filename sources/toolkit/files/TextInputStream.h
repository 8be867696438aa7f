#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/files/InputStream.h"

class wxTextInputStream;

namespace Toolkit {

/// Reads a stream word by word.
class TOOLKIT_API TextInputStream : public InputStream {
public:
    /// Takes `stream` over; without one every word is empty. The byte stream below it stays the
    /// caller's and has to outlive this object.
    explicit TextInputStream(wxTextInputStream* stream) : InputStream(nullptr)
    {
        m_stream = stream;
    }
    ~TextInputStream() override;

    /// Reads the next word, up to the white space behind it, in place of what `word` held; the
    /// empty text at the end of the stream, and when out of memory.
    TextInputStream& operator>>(TString<wchar_t>& word);
};

} // namespace Toolkit
