#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/files/InputStream.h"

#include <vector>

class wxZipInputStream;

namespace Toolkit {

/// Reads an entry of a Zip archive as words, lines or bytes, in any combination.
///
/// An archive has one stream, which reads the entry that was opened last. Text is decoded as UTF-8,
/// or in the encoding of a byte-order mark, if there is one where an operation begins to read. One
/// object is used by one thread at a time. Nothing is thrown: running out of memory puts the stream
/// into its error state.
class TOOLKIT_API ZipInputStream : public InputStream {
public:
    /// Takes ownership of `stream`. If it is null, nothing can be read.
    explicit ZipInputStream(wxZipInputStream* stream);
    ~ZipInputStream() override;

    /// Returns the wxWidgets stream, which this object still owns.
    operator wxZipInputStream*() const;

    bool CanRead() const;

    /// False after an error, and after a read that reached the end of the entry.
    bool IsOk() const;

    /// Reads the next word and the space, tab or line ending after it. `word` is empty if none is
    /// left.
    ZipInputStream& operator>>(TString<wchar_t>& word);

    /// Reads the next line, without its end: a line feed, a carriage return or both. Returns false,
    /// with an empty `line`, after an error or if the entry ends first: a last line without a line
    /// end is lost, and so is one that ends in a carriage return alone.
    bool ReadLine(TString<wchar_t>& line);

    /// Appends the rest of the entry to `bytes`. For damaged data it appends what can be
    /// decompressed; for an encrypted entry it appends the stored bytes.
    void operator>>(std::vector<unsigned char>& bytes);

private:
    wxZipInputStream* Stream() const;
};

} // namespace Toolkit
