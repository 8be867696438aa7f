#include "toolkit/core/FSStream.h"

#include "toolkit/base/FileDescriptor.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/core/StreamResult.h"

#include <wx/file.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <limits>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace Toolkit {
namespace {

static_assert(sizeof(wchar_t) == 4 && sizeof(unsigned int) == 4, "the sizes of the file format");

// Characters are read in pieces of this many: a size that a file claims is not allocated before its
// characters came.
constexpr std::size_t c_pieceLength = 4096;

int FlagsOfMode(FSStream::OpenMode mode)
{
    switch (static_cast<wxFile::OpenMode>(mode)) {
    case wxFile::write:
        return O_WRONLY | O_CREAT | O_TRUNC;
    case wxFile::read_write:
        return O_RDWR;
    case wxFile::write_append:
        return O_WRONLY | O_CREAT | O_APPEND;
    case wxFile::write_excl:
        return O_WRONLY | O_CREAT | O_EXCL;
    default:
        return O_RDONLY;
    }
}

// A pipe is no storage that could be read back, and without O_NONBLOCK opening one may never
// return.
Base::FileDescriptor OpenStorage(const TString<wchar_t>& path, FSStream::OpenMode mode)
{
    constexpr mode_t everyone = 0666;

    const TString<char> name = Base::EncodeUtf8(path);
    Base::FileDescriptor file(
        ::open(name.c_str(), FlagsOfMode(mode) | O_NONBLOCK | O_CLOEXEC, everyone));
    struct stat status {};
    if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
        return {};
    return S_ISREG(status.st_mode) || S_ISCHR(status.st_mode) ? std::move(file)
                                                              : Base::FileDescriptor();
}

// Null when the file cannot be opened. wxFile only holds the descriptor: its own operations print a
// message for every failure.
std::unique_ptr<wxFile> Open(const TString<wchar_t>& path, FSStream::OpenMode mode)
{
    auto file = std::make_unique<wxFile>();
    Base::FileDescriptor descriptor = OpenStorage(path, mode);
    if (!descriptor.IsOpen())
        return nullptr;
    file->Attach(descriptor.Release());
    return file;
}

bool WriteAll(int file, const void* data, std::size_t size)
{
    const char* bytes = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = ::write(file, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

bool ReadAll(int file, void* data, std::size_t size)
{
    char* bytes = static_cast<char*>(data);
    while (size > 0) {
        const ssize_t count = ::read(file, bytes, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

// Appends the whole characters of the next `size` bytes to `text`; false when the file has fewer.
bool ReadCharacters(int file, std::size_t size, std::wstring& text)
{
    wchar_t piece[c_pieceLength];
    while (size > 0) {
        const std::size_t pieceSize = std::min(size, sizeof piece);
        if (!ReadAll(file, piece, pieceSize))
            return false;
        text.append(piece, pieceSize / sizeof(wchar_t));
        size -= pieceSize;
    }
    return true;
}

} // namespace

FSStream::FSStream(const TString<wchar_t>& path, OpenMode mode)
    : m_file(Base::ResultOr(nullptr, [&] { return Open(path, mode); }))
{
}

FSStream::~FSStream()
{
    if (IsOpen())
        ::close(m_file->Detach());
}

bool FSStream::IsOpen() const
{
    return m_file && m_file->IsOpened();
}

unsigned int FSStream::Write(const TString<wchar_t>& text)
{
    if (!IsOpen())
        return StreamResult::NotOpen;

    constexpr std::size_t longest = std::numeric_limits<unsigned int>::max() / sizeof(wchar_t);
    if (text.size() > longest)
        return StreamResult::WritePrefixFailed;
    const std::size_t size = text.size() * sizeof(wchar_t);
    if (StreamResult::Failed(Write(static_cast<unsigned int>(size))))
        return StreamResult::WritePrefixFailed;
    if (size == 0)
        return StreamResult::Nothing;
    return WriteAll(m_file->fd(), text.data(), size) ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Write(unsigned int value)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    return WriteAll(m_file->fd(), &value, sizeof value) ? StreamResult::Ok
                                                        : StreamResult::WriteIntegerFailed;
}

unsigned int FSStream::Write(const void* data, unsigned int size)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    if (!data && size > 0)
        return StreamResult::DataFailed;
    return WriteAll(m_file->fd(), data, size) ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Read(TString<wchar_t>& text)
{
    if (!IsOpen())
        return StreamResult::NotOpen;

    unsigned int size = 0;
    if (StreamResult::Failed(Read(size)))
        return StreamResult::ReadPrefixFailed;
    if (size == 0)
        return StreamResult::Nothing;
    const bool isRead = Base::ResultOr(false, [&] {
        std::wstring characters;
        if (!ReadCharacters(m_file->fd(), size, characters))
            return false;
        text.assign(characters.c_str());
        return true;
    });
    return isRead ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Read(unsigned int& value)
{
    // Not the virtual operation: a derived stream sees an integer as an integer alone.
    return FSStream::Read(&value, sizeof value);
}

unsigned int FSStream::Read(void* data, unsigned int size)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    if (!data && size > 0)
        return StreamResult::DataFailed;
    return ReadAll(m_file->fd(), data, size) ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Length() const
{
    struct stat status {};
    if (!IsOpen() || ::fstat(m_file->fd(), &status) != 0)
        return 0;
    return static_cast<unsigned int>(static_cast<std::uint64_t>(status.st_size));
}

} // namespace Toolkit
