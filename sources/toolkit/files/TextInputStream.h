#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/files/InputStream.h"

class wxTextInputStream;

namespace Toolkit {

/// Reads a stream word by word.
class TOOLKIT_API TextInputStream : public InputStream {
public:
    /// Takes ownership of `stream`; if it is null, every word is empty. The byte stream that
    /// `stream` reads from is still owned by the caller and must outlive this object.
    explicit TextInputStream(wxTextInputStream* stream) : InputStream(nullptr)
    {
        m_stream = stream;
    }
    ~TextInputStream() override;

    /// Replaces `word` with the next word. A word ends at a line ending or at a separator of
    /// `stream`, by default a space or a tab. `word` is empty at the end of the stream and when out
    /// of memory.
    TextInputStream& operator>>(TString<wchar_t>& word);
};

} // namespace Toolkit
