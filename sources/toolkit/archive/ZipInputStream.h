#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/files/InputStream.h"

#include <vector>

class wxZipInputStream;

namespace Toolkit {

/// Reads an entry of a Zip archive as words, lines or bytes, in turn as the caller likes.
///
/// A whole archive has one stream, which reads the entry that was opened last. Text is UTF-8, or in
/// the encoding of a byte-order mark at the place where an operation begins to read. One object
/// is used by one thread at a time. Nothing is thrown: what does not fit into memory is an error of
/// the stream.
class TOOLKIT_API ZipInputStream : public InputStream {
public:
    /// Takes `stream` over.
    explicit ZipInputStream(wxZipInputStream* stream);
    ~ZipInputStream() override;

    /// The stream of wxWidgets, which stays owned by this object.
    operator wxZipInputStream*() const;

    bool CanRead() const;

    /// False at the end of an entry, too: after a read has met it.
    bool IsOk() const;

    /// Reads the next word and the space, tab or line end after it.
    ZipInputStream& operator>>(TString<wchar_t>& word);

    /// Reads the next line, without its end: a line feed, a carriage return or both. False, with an
    /// empty line, when the data end before the line does: a last line without an end is lost.
    bool ReadLine(TString<wchar_t>& line);

    /// Appends the rest of the entry to `bytes`. What an entry that cannot be decompressed yields
    /// comes as far as it goes; encrypted entries yield what is stored.
    void operator>>(std::vector<unsigned char>& bytes);

private:
    wxZipInputStream* Stream() const;
};

} // namespace Toolkit
