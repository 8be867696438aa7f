#pragma once

#include "toolkit/core/TString.h"

#include <wx/zipstrm.h>

#include <memory>
#include <string>
#include <string_view>

namespace Toolkit {

/// Decodes entry names in the encoding of the environment's locale. In a name that is not valid
/// there, each byte becomes the character of its value, so that different names stay different.
class EntryNameConverter : public wxMBConv {
public:
    std::size_t ToWChar(wchar_t* text, std::size_t textLength, const char* bytes,
                        std::size_t length) const override;
    std::size_t FromWChar(char* bytes, std::size_t bytesLength, const wchar_t* text,
                          std::size_t length) const override;
    wxMBConv* Clone() const override;
};

/// Owns what wxZipInputStream refers to, so it is the first base class.
struct EntryNameConverterOwner {
    EntryNameConverter converter;
};

/// A wxZipInputStream that can look at the bytes that come next.
class ArchiveStream final : private EntryNameConverterOwner, public wxZipInputStream {
public:
    /// A stream over the file `path`; in an error state when the file cannot be opened.
    static std::unique_ptr<ArchiveStream> OpenFile(const TString<wchar_t>& path);

    /// Takes ownership of `stream`.
    explicit ArchiveStream(wxInputStream* stream);

    /// The bytes that were peeked at and not read yet. Valid until the next call.
    std::string_view Ahead() const;

    /// Peeks at more bytes, but not beyond the stated size of the entry: a stream can meet the end
    /// of an entry only once. False when no more bytes are left.
    bool LookAhead();

    /// Puts bytes that a reader has put back before those that were peeked at.
    void TakeBackUnread();

    /// Marks `count` of the peeked bytes as read.
    void Skip(std::size_t count);

    bool CloseEntry() override;

protected:
    wxInputStream* OpenDecompressor(wxInputStream& stream) override;
    std::size_t OnSysRead(void* buffer, std::size_t size) override;
    wxFileOffset OnSysTell() const override;

private:
    std::string m_ahead;
    std::size_t m_aheadBegin = 0; // bytes of m_ahead before it have been read
    // The state of the stream once all peeked bytes have been read.
    wxStreamError m_errorAfterPeeked = wxSTREAM_NO_ERROR;
};

} // namespace Toolkit
