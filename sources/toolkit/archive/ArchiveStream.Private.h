#pragma once

#include "toolkit/core/TString.h"

#include <wx/zipstrm.h>

#include <memory>
#include <string>
#include <string_view>

namespace Toolkit {

/// Decodes entry names in the encoding of the environment's locale. In a name that is not valid in
/// this encoding, each byte becomes the character with the same value, so that different names stay
/// different.
class EntryNameConverter : public wxMBConv {
public:
    std::size_t ToWChar(wchar_t* text, std::size_t textLength, const char* bytes,
                        std::size_t length) const override;
    std::size_t FromWChar(char* bytes, std::size_t bytesLength, const wchar_t* text,
                          std::size_t length) const override;
    wxMBConv* Clone() const override;
};

/// Owns the converter that the wxZipInputStream of an ArchiveStream refers to. As the first base
/// class of ArchiveStream, it is constructed before the wxZipInputStream and destroyed after it.
struct EntryNameConverterOwner {
    EntryNameConverter converter;
};

/// A wxZipInputStream that can peek at the next bytes of its entry.
class ArchiveStream final : private EntryNameConverterOwner, public wxZipInputStream {
public:
    /// Returns a stream over the file `path`; it is in an error state if the file cannot be opened.
    static std::unique_ptr<ArchiveStream> OpenFile(const TString<wchar_t>& path);

    /// Takes ownership of `stream`.
    explicit ArchiveStream(wxInputStream* stream);

    /// Returns the bytes that were peeked at but not read yet. Valid until the next call of any
    /// operation.
    std::string_view GetPeeked() const;

    /// Peeks at more bytes, but not past the stated size of the entry, because wxZipInputStream
    /// must not reach the end of an entry twice. Returns false if it adds no bytes: at that limit,
    /// where the data ends early, and after an error.
    bool PeekMore();

    /// Moves the bytes that a reader put back with Ungetch() to the front of the peeked bytes.
    void ReclaimUngetBytes();

    /// Marks `count` of the peeked bytes as read.
    void Skip(std::size_t count);

    bool CloseEntry() override;

protected:
    wxInputStream* OpenDecompressor(wxInputStream& stream) override;
    std::size_t OnSysRead(void* buffer, std::size_t size) override;
    wxFileOffset OnSysTell() const override;

private:
    std::string m_peeked;
    std::size_t m_peekedBegin = 0; // index in m_peeked of the first byte not read yet
    // The state of the stream once all peeked bytes have been read.
    wxStreamError m_errorAfterPeeked = wxSTREAM_NO_ERROR;
};

} // namespace Toolkit
