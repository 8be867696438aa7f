#include "toolkit/core/FSStream.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/core/StreamFile.Private.h"
#include "toolkit/core/StreamResult.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <limits>
#include <string>
#include <utility>
#include <wchar.h>

namespace Toolkit {
namespace {

static_assert(sizeof(wchar_t) == 4 && sizeof(unsigned int) == 4, "the sizes of the file format");

// Long strings are read this many characters at a time, so that a file that claims too large a size
// costs no memory.
constexpr std::size_t c_charactersPerRead = 4096;

// The modes of wxFile. `FSStream::OpenMode` names only two of them, but programs may pass all.
enum FileMode { Read = 0, Write = 1, ReadWrite = 2, WriteAppend = 3, WriteExclusive = 4 };

int ToFlags(FSStream::OpenMode mode)
{
    switch (static_cast<int>(mode)) {
    case FileMode::Write:
        return O_WRONLY | O_CREAT | O_TRUNC;
    case FileMode::ReadWrite:
        return O_RDWR;
    case FileMode::WriteAppend:
        return O_WRONLY | O_CREAT | O_APPEND;
    case FileMode::WriteExclusive:
        return O_WRONLY | O_CREAT | O_EXCL;
    default:
        return O_RDONLY;
    }
}

// Returns null if the file cannot be opened.
std::unique_ptr<StreamFile> OpenFile(const TString<wchar_t>& path, FSStream::OpenMode mode)
{
    auto file = std::make_unique<StreamFile>(Base::EncodeUtf8(path), ToFlags(mode));
    return file->IsOpen() ? std::move(file) : nullptr;
}

// Appends the whole characters of the next `size` bytes to `text`; returns false if the file has
// fewer bytes.
bool AppendCharacters(StreamFile& file, std::size_t size, std::wstring& text)
{
    wchar_t piece[c_charactersPerRead];
    while (size > 0) {
        const std::size_t pieceSize = std::min(size, sizeof piece);
        if (!file.Read(piece, pieceSize))
            return false;
        text.append(piece, pieceSize / sizeof(wchar_t));
        size -= pieceSize;
    }
    return true;
}

// Stores the characters of the next `size` bytes, up to the first null character, in `text`.
// Returns false, with `text` unchanged, if the file has fewer bytes.
bool ReadCharacters(StreamFile& file, std::size_t size, TString<wchar_t>& text)
{
    wchar_t piece[c_charactersPerRead];
    if (size > sizeof piece) {
        std::wstring characters;
        if (!AppendCharacters(file, size, characters))
            return false;
        text.assign(characters.c_str());
        return true;
    }
    // ReadRecords: a temporary string for each read takes 1.5 times as long.
    if (!file.Read(piece, size))
        return false;
    text.assign(piece, ::wcsnlen(piece, size / sizeof(wchar_t)));
    return true;
}

} // namespace

FSStream::FSStream(const TString<wchar_t>& path, OpenMode mode)
    : m_file(Base::TryOr(nullptr, [&] { return OpenFile(path, mode); }))
{
}

FSStream::~FSStream() = default;

bool FSStream::IsOpen() const
{
    return m_file != nullptr;
}

unsigned int FSStream::Write(const TString<wchar_t>& text)
{
    if (!IsOpen())
        return StreamResult::NotOpen;

    constexpr std::size_t maxLength = std::numeric_limits<unsigned int>::max() / sizeof(wchar_t);
    if (text.size() > maxLength)
        return StreamResult::WritePrefixFailed;
    const std::size_t size = text.size() * sizeof(wchar_t);
    if (StreamResult::Failed(Write(static_cast<unsigned int>(size))))
        return StreamResult::WritePrefixFailed;
    if (size == 0)
        return StreamResult::Nothing;
    return m_file->Write(text.data(), size) ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Write(unsigned int value)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    return m_file->Write(&value, sizeof value) ? StreamResult::Ok
                                               : StreamResult::WriteIntegerFailed;
}

unsigned int FSStream::Write(const void* data, unsigned int size)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    if (!data && size > 0)
        return StreamResult::DataFailed;
    return m_file->Write(data, size) ? StreamResult::Ok : StreamResult::DataFailed;
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
    const bool isRead = Base::TryOr(false, [&] { return ReadCharacters(*m_file, size, text); });
    return isRead ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Read(unsigned int& value)
{
    // Qualified, so not a virtual call: a derived stream that overrides both functions sees only
    // one call for an integer.
    return FSStream::Read(&value, sizeof value);
}

unsigned int FSStream::Read(void* data, unsigned int size)
{
    if (!IsOpen())
        return StreamResult::NotOpen;
    if (size == 0)
        return StreamResult::Ok;
    if (!data)
        return StreamResult::DataFailed;
    return m_file->Read(data, size) ? StreamResult::Ok : StreamResult::DataFailed;
}

unsigned int FSStream::Length() const
{
    if (!IsOpen())
        return 0;
    return static_cast<unsigned int>(static_cast<std::uint64_t>(m_file->GetLength()));
}

} // namespace Toolkit
