#include "toolkit/files/FFile.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"

#include <wx/ffile.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace Toolkit {
namespace {

// Returns the flags of open(2) for a mode of fopen(3); no value for an invalid mode.
std::optional<int> ToFlags(const std::string& mode)
{
    const bool updates = mode.find('+') != std::string::npos;
    const int exclusive = mode.find('x') != std::string::npos ? O_EXCL : 0;
    switch (mode.empty() ? '\0' : mode.front()) {
    case 'r':
        return updates ? O_RDWR : O_RDONLY;
    case 'w':
        return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC | exclusive;
    case 'a':
        return (updates ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND | exclusive;
    default:
        return std::nullopt;
    }
}

// Hands `descriptor` over to `file`. wxFFile only owns the stream; its operations are not used,
// because they print a message for every failure.
bool Attach(wxFFile& file, Base::FileDescriptor descriptor, const std::string& mode)
{
    if (!descriptor.IsOpen())
        return false;
    std::FILE* const stream = ::fdopen(descriptor.Get(), mode.c_str());
    if (!stream)
        return false;
    descriptor.Release();
    file.Attach(stream);
    return true;
}

} // namespace

FFile::FFile() : m_file(Base::TryOr(nullptr, [] { return std::make_unique<wxFFile>(); })) {}

FFile::~FFile()
{
    Close();
}

bool FFile::Open(const TString<wchar_t>& name, const TString<wchar_t>& mode)
{
    Close();
    return Base::TryOr(false, [&] { return OpenAfterClosing(name, mode); });
}

bool FFile::OpenAfterClosing(const TString<wchar_t>& name, const TString<wchar_t>& mode)
{
    const std::string modeText = Base::EncodeUtf8(mode);
    const std::optional<int> flags = ToFlags(modeText);
    // m_file is null if the constructor ran out of memory.
    if (!m_file)
        m_file = std::make_unique<wxFFile>();
    if (!flags ||
        !Attach(*m_file, Base::FileDescriptor::Open(Base::EncodeUtf8(name), *flags), modeText))
        return false;
    // For a mode that only appends, fopen() moves to the end of the file; fdopen() does not. A pipe
    // has no positions.
    const bool onlyAppends = (*flags & O_APPEND) != 0 && (*flags & O_ACCMODE) == O_WRONLY;
    if (!onlyAppends || SeekEnd(0) || errno == ESPIPE)
        return true;
    Close();
    return false;
}

bool FFile::IsOpened() const
{
    return m_file && m_file->IsOpened();
}

bool FFile::Read(void* buffer, unsigned int count)
{
    return IsOpened() && buffer && std::fread(buffer, 1, count, m_file->fp()) > 0;
}

void FFile::Write(const TString<wchar_t>& text)
{
    // Reports no failure, not even out of memory.
    static_cast<void>(Base::RunsWithoutThrowing([&] {
        std::string bytes;
        if (IsOpened() && Base::AppendEncodedUtf8(bytes, text.data(), text.size()))
            std::fwrite(bytes.data(), 1, bytes.size(), m_file->fp());
    }));
}

bool FFile::Flush()
{
    return !IsOpened() || std::fflush(m_file->fp()) == 0;
}

bool FFile::Close()
{
    if (!IsOpened())
        return true;
    // The stream is gone even when fclose() fails, so wxFFile must not close it again.
    std::FILE* const stream = m_file->fp();
    m_file->Detach();
    return std::fclose(stream) == 0;
}

unsigned int FFile::GetLength() const
{
    if (!IsOpened())
        return 0;
    std::FILE* const stream = m_file->fp();
    std::fflush(stream);
    // Not by seeking to the end and back, which would clear the end-of-file state.
    struct stat status {};
    if (::fstat(::fileno(stream), &status) != 0)
        return 0;
    return static_cast<unsigned int>(static_cast<std::uint64_t>(status.st_size));
}

bool FFile::IsEOF() const
{
    return !IsOpened() || std::feof(m_file->fp()) != 0;
}

long long FFile::GetOffset() const
{
    return IsOpened() ? ::ftello(m_file->fp()) : -1;
}

bool FFile::Seek(long long offset, bool start)
{
    return SeekTo(offset, start ? SEEK_SET : SEEK_CUR);
}

bool FFile::SeekEnd(long long offset)
{
    return SeekTo(offset, SEEK_END);
}

bool FFile::SeekTo(long long offset, int origin)
{
    return IsOpened() && ::fseeko(m_file->fp(), offset, origin) == 0;
}

bool FFile::Exists(const TString<wchar_t>& name)
{
    return Base::TryOr(false, [&] {
        struct stat status {};
        return ::stat(Base::EncodeUtf8(name).c_str(), &status) == 0 && S_ISREG(status.st_mode);
    });
}

} // namespace Toolkit
