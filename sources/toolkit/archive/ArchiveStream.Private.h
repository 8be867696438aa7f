#pragma once

#include "toolkit/core/TString.h"

#include <wx/zipstrm.h>

#include <memory>
#include <string>
#include <string_view>

namespace Toolkit {

/// Entry names in the encoding of the environment's locale. Where they are not valid in it each
/// byte is the character of its value, so that no two names fall together.
class EntryNameConverter : public wxMBConv {
public:
    std::size_t ToWChar(wchar_t* text, std::size_t textLength, const char* bytes,
                        std::size_t length) const override;
    std::size_t FromWChar(char* bytes, std::size_t bytesLength, const wchar_t* text,
                          std::size_t length) const override;
    wxMBConv* Clone() const override;
};

/// Owns what wxZipInputStream refers to, and so is the base before it.
struct EntryNameConverterOwner {
    EntryNameConverter converter;
};

/// A wxZipInputStream that can look at the bytes that come next.
class ArchiveStream final : private EntryNameConverterOwner, public wxZipInputStream {
public:
    /// A stream over the file `path`, in a state of error when it cannot be opened.
    static std::unique_ptr<ArchiveStream> OpenFile(const TString<wchar_t>& path);

    /// Takes `stream` over.
    explicit ArchiveStream(wxInputStream* stream);

    /// The bytes that were looked at and not read yet. Good until the next call.
    std::string_view Ahead() const;

    /// Looks at more bytes, never more than the entry says it has left: meeting its end is an event
    /// of its own, which a stream goes through once. False when there are none to look at.
    bool LookAhead();

    /// Puts what a reader has handed back before all that was looked at.
    void TakeBackUnread();

    /// Takes `count` of the bytes that were looked at as read.
    void Skip(std::size_t count);

    bool CloseEntry() override;

protected:
    wxInputStream* OpenDecompressor(wxInputStream& stream) override;
    std::size_t OnSysRead(void* buffer, std::size_t size) override;
    wxFileOffset OnSysTell() const override;

private:
    std::string m_ahead;
    std::size_t m_aheadBegin = 0; // what is before it in m_ahead has been read
    // The state that the stream has once all that was looked at has been read.
    wxStreamError m_errorBehind = wxSTREAM_NO_ERROR;
};

} // namespace Toolkit
