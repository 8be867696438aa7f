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
    /// `stream` reads from remains the caller's and must outlive this object.
    explicit TextInputStream(wxTextInputStream* stream) : InputStream(nullptr)
    {
        m_stream = stream;
    }
    ~TextInputStream() override;

    /// Replaces `word` with the next word. Words end at line endings and at the separators of
    /// `stream`, by default space and tab. Empty at the end of the stream, and when out of memory.
    TextInputStream& operator>>(TString<wchar_t>& word);
};

} // namespace Toolkit
