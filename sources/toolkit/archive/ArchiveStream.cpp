#include "toolkit/archive/ArchiveFile.Private.h"
#include "toolkit/archive/ArchiveStream.Private.h"
#include "toolkit/base/Utf8.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>

namespace Toolkit {
namespace {

constexpr wxFileOffset c_blockSize = 4096;

// Whether the byte is the same character in the encoding of every locale. Some encodings, such as
// Shift JIS, have other characters in place of the backslash and the tilde.
bool IsInvariant(char byte)
{
    return byte >= ' ' && byte < '~' && byte != '\\';
}

} // namespace

std::size_t EntryNameConverter::ToWChar(wchar_t* text, std::size_t textLength, const char* bytes,
                                        std::size_t length) const
{
    if (length != wxNO_LEN && std::all_of(bytes, bytes + length, IsInvariant)) {
        if (text && textLength < length)
            return wxCONV_FAILED;
        if (text)
            std::copy_n(bytes, length, text);
        return length;
    }
    const std::size_t converted = wxConvLocal.ToWChar(text, textLength, bytes, length);
    return converted != wxCONV_FAILED ? converted
                                      : wxConvISO8859_1.ToWChar(text, textLength, bytes, length);
}

std::size_t EntryNameConverter::FromWChar(char* bytes, std::size_t bytesLength, const wchar_t* text,
                                          std::size_t length) const
{
    return wxConvLocal.FromWChar(bytes, bytesLength, text, length);
}

wxMBConv* EntryNameConverter::Clone() const
{
    return new EntryNameConverter(*this);
}

std::unique_ptr<ArchiveStream> ArchiveStream::OpenFile(const TString<wchar_t>& path)
{
    auto file =
        std::make_unique<ArchiveFile>(Base::FileDescriptor::Open(Base::EncodeUtf8(path), O_RDONLY));
    const bool isOpen = file->IsOk();
    // Not make_unique(): it would leak the released file when out of memory.
    std::unique_ptr<ArchiveStream> archive(new ArchiveStream(file.release()));
    if (!isOpen)
        archive->Reset(wxSTREAM_READ_ERROR);
    return archive;
}

ArchiveStream::ArchiveStream(wxInputStream* stream)
    : wxZipInputStream(stream, EntryNameConverterOwner::converter)
{
}

std::string_view ArchiveStream::GetPeeked() const
{
    return std::string_view(m_peeked).substr(m_peekedBegin);
}

bool ArchiveStream::PeekMore()
{
    if (!IsOk() || m_errorAfterPeeked != wxSTREAM_NO_ERROR)
        return false;
    const wxFileOffset left = GetLength() - wxZipInputStream::OnSysTell();
    if (left <= 0)
        return false;

    // At the end of an entry, wxWidgets compares the entry's size with OnSysTell(), which subtracts
    // the peeked bytes. So m_peeked must be empty during the read.
    std::string peeked = std::exchange(m_peeked, {});
    peeked.erase(0, std::exchange(m_peekedBegin, 0));
    // Doubles the size, so that a long line is not copied again and again.
    const std::size_t oldSize = peeked.size();
    const auto wanted = std::max(c_blockSize, static_cast<wxFileOffset>(oldSize));
    const auto size = static_cast<std::size_t>(std::min(left, wanted));
    peeked.resize(oldSize + size);
    const std::size_t count = wxZipInputStream::OnSysRead(peeked.data() + oldSize, size);
    peeked.resize(oldSize + count);
    m_peeked = std::move(peeked);
    m_errorAfterPeeked = GetLastError();
    Reset();
    return count > 0;
}

void ArchiveStream::Skip(std::size_t count)
{
    m_peekedBegin += count;
}

void ArchiveStream::ReclaimUngetBytes()
{
    if (m_wbackcur >= m_wbacksize)
        return;
    m_peeked.replace(0, m_peekedBegin, m_wback + m_wbackcur, m_wbacksize - m_wbackcur);
    m_peekedBegin = 0;
    m_wbackcur = m_wbacksize;
}

bool ArchiveStream::CloseEntry()
{
    // Without this, wxZipInputStream would return bytes that were put back into this entry as the
    // first bytes of the next one.
    ReclaimUngetBytes();
    m_peeked.clear();
    m_peekedBegin = 0;
    m_errorAfterPeeked = wxSTREAM_NO_ERROR;
    return wxZipInputStream::CloseEntry();
}

wxInputStream* ArchiveStream::OpenDecompressor(wxInputStream& stream)
{
    // If the compressed data of an entry ends early, wxWidgets puts the bytes after it back into
    // `stream`. If n bytes were put back, the position is -n. Skips these bytes.
    const wxFileOffset position = stream.TellI();
    if (position < 0) {
        std::string skipped(static_cast<std::size_t>(-position), '\0');
        stream.Read(skipped.data(), skipped.size());
    }
    return wxZipInputStream::OpenDecompressor(stream);
}

std::size_t ArchiveStream::OnSysRead(void* buffer, std::size_t size)
{
    if (!IsOk() || size == 0)
        return 0;
    if (m_peekedBegin < m_peeked.size()) {
        const std::size_t count = m_peeked.copy(static_cast<char*>(buffer), size, m_peekedBegin);
        Skip(count);
        return count;
    }
    if (m_errorAfterPeeked == wxSTREAM_NO_ERROR)
        return wxZipInputStream::OnSysRead(buffer, size);
    m_lasterror = std::exchange(m_errorAfterPeeked, wxSTREAM_NO_ERROR);
    return 0;
}

wxFileOffset ArchiveStream::OnSysTell() const
{
    return wxZipInputStream::OnSysTell() -
           static_cast<wxFileOffset>(m_peeked.size() - m_peekedBegin);
}

} // namespace Toolkit
