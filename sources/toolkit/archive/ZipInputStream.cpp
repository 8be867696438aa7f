#include "toolkit/archive/ZipInputStream.h"

#include "toolkit/archive/EntryTextReader.Private.h"
#include "toolkit/framework/Silence.h"

#include <wx/zipstrm.h>

#include <algorithm>
#include <exception>

namespace Toolkit {
namespace {

// What an archive says about the length of an entry is not believed at once: memory grows with what
// has come, in larger steps where much is said to follow.
void ReserveFor(std::vector<unsigned char>& bytes, std::size_t needed, wxFileOffset claimedLeft)
{
    constexpr std::size_t largestStep = 4;

    if (needed > bytes.capacity() && claimedLeft > 0)
        bytes.reserve(
            std::min(needed * largestStep, needed + static_cast<std::size_t>(claimedLeft)));
}

// What does not fit into memory is an error of the stream.
void Fail(wxZipInputStream* stream)
{
    if (stream)
        stream->Reset(wxSTREAM_READ_ERROR);
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
try {
    const Framework::Silence silence;
    word.clear();
    if (Stream())
        EntryTextReader::ReadWord(*Stream(), word);
    return *this;
} catch (const std::exception&) {
    word.clear();
    Fail(Stream());
    return *this;
}

bool ZipInputStream::ReadLine(TString<wchar_t>& line)
try {
    const Framework::Silence silence;
    line.clear();
    if (!Stream())
        return false;
    EntryTextReader::ReadLine(*Stream(), line);
    if (Stream()->GetLastError() == wxSTREAM_NO_ERROR)
        return true;
    line.clear();
    return false;
} catch (const std::exception&) {
    line.clear();
    Fail(Stream());
    return false;
}

void ZipInputStream::operator>>(std::vector<unsigned char>& bytes)
try {
    constexpr std::size_t blockSize = 65536;

    const Framework::Silence silence;
    if (!Stream())
        return;
    std::vector<unsigned char> block(blockSize);
    std::size_t count = 0;
    do {
        count = Stream()->Read(block.data(), block.size()).LastRead();
        ReserveFor(bytes, bytes.size() + count, Stream()->GetLength() - Stream()->TellI());
        bytes.insert(bytes.end(), block.data(), block.data() + count);
    } while (count == block.size());
} catch (const std::exception&) {
    Fail(Stream());
}

} // namespace Toolkit
