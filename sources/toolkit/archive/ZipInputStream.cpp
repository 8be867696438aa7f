#include "toolkit/archive/ZipInputStream.h"

#include "toolkit/archive/EntryTextReader.Private.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/framework/Silence.h"

#include <wx/zipstrm.h>

#include <algorithm>

namespace Toolkit {
namespace {

// Does not trust the length that the archive claims: memory grows with the bytes read, in larger
// steps while the archive claims that more bytes follow.
void ReserveFor(std::vector<unsigned char>& bytes, std::size_t needed, wxFileOffset claimedLeft)
{
    constexpr std::size_t maxFactor = 4;

    if (needed > bytes.capacity() && claimedLeft > 0)
        bytes.reserve(std::min(needed * maxFactor, needed + static_cast<std::size_t>(claimedLeft)));
}

void Append(wxZipInputStream& stream, std::vector<unsigned char>& bytes)
{
    constexpr std::size_t blockSize = 65536;

    std::vector<unsigned char> block(blockSize);
    std::size_t count = 0;
    do {
        count = stream.Read(block.data(), block.size()).LastRead();
        ReserveFor(bytes, bytes.size() + count, stream.GetLength() - stream.TellI());
        bytes.insert(bytes.end(), block.data(), block.data() + count);
    } while (count == block.size());
}

// Runs `read`; returns false if `stream` is null. If `read` throws, returns false and sets an error
// on the stream.
template <typename Read>
bool ReadFrom(wxZipInputStream* stream, Read read)
{
    if (!stream)
        return false;
    const bool isRead = Base::RunsWithoutThrowing([&] {
        const Framework::Silence silence;
        read(*stream);
    });
    if (!isRead)
        stream->Reset(wxSTREAM_READ_ERROR);
    return isRead;
}

} // namespace

ZipInputStream::ZipInputStream(wxZipInputStream* stream) : InputStream(nullptr)
{
    m_stream = stream;
}

ZipInputStream::~ZipInputStream()
{
    const Framework::Silence silence;
    delete Stream();
    m_stream = nullptr;
}

wxZipInputStream* ZipInputStream::Stream() const
{
    return static_cast<wxZipInputStream*>(m_stream);
}

ZipInputStream::operator wxZipInputStream*() const
{
    return Stream();
}

bool ZipInputStream::CanRead() const
{
    const Framework::Silence silence;
    return Stream() && Stream()->CanRead();
}

bool ZipInputStream::IsOk() const
{
    return Stream() && Stream()->IsOk();
}

ZipInputStream& ZipInputStream::operator>>(TString<wchar_t>& word)
{
    const auto read = [&](wxZipInputStream& stream) { ReadEntryWord(stream, word); };
    if (!ReadFrom(Stream(), read))
        word.clear();
    return *this;
}

bool ZipInputStream::ReadLine(TString<wchar_t>& line)
{
    const auto read = [&](wxZipInputStream& stream) { ReadEntryLine(stream, line); };
    if (ReadFrom(Stream(), read) && Stream()->GetLastError() == wxSTREAM_NO_ERROR)
        return true;
    line.clear();
    return false;
}

void ZipInputStream::operator>>(std::vector<unsigned char>& bytes)
{
    static_cast<void>(ReadFrom(Stream(), [&](wxZipInputStream& stream) { Append(stream, bytes); }));
}

} // namespace Toolkit
