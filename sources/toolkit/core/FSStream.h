#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/IStream.h"
#include "toolkit/core/TString.h"

#include <memory>

namespace Toolkit {

class StreamFile;

/// A stream over a file: objects write themselves to it and read themselves back.
///
///     FSStream out(L"state.bin", FSStream::OpenWrite);
///     out.Write(TString<wchar_t>(L"Ann"));
///     out.Write(42u);
///
/// Integers and characters are stored as they are in memory, so files do not move between hosts of
/// different byte order. One object is used by one thread at a time. Nothing is thrown or logged.
///
/// Each write is in the file when it returns. A stream that only reads a regular file reads up to
/// 64 KiB ahead: it finds what another process appends, and may miss what another process
/// overwrites in those 64 KiB.
class TOOLKIT_API FSStream : public IStream {
public:
    /// The values of `wxFile::OpenMode`; its other modes are accepted as well.
    enum OpenMode : int {
        OpenRead = 0, ///< An existing file.
        OpenWrite = 1 ///< The file is created or emptied.
    };

    /// Opens `path`. Waits like open(2): a pipe opens when its other end does. If that fails, if
    /// `path` is a directory, or when out of memory, every operation returns
    /// `StreamResult::NotOpen`.
    FSStream(const TString<wchar_t>& path, OpenMode mode);
    ~FSStream() override;

    /// Writes the size in bytes with `Write(unsigned int)`, then the characters. For the empty text
    /// writes a size of 0 and returns `StreamResult::Nothing`.
    ///
    /// The size of a text of 4 GiB or more does not fit: `StreamResult::WritePrefixFailed`.
    unsigned int Write(const TString<wchar_t>& text) override;

    /// Writes four bytes; `StreamResult::WriteIntegerFailed` when the system takes fewer.
    unsigned int Write(unsigned int value) override;

    unsigned int Write(const void* data, unsigned int size) override;

    /// Reads the size in bytes with `Read(unsigned int&)`, then the characters. `text` gets those
    /// before the first null character.
    ///
    /// A size of 0 returns `StreamResult::Nothing` and leaves `text` as it is, and so does every
    /// failure. A size that is no multiple of 4 ends with a part of a character, which is dropped.
    /// Takes no more memory than the file has bytes for, whatever size it claims.
    unsigned int Read(TString<wchar_t>& text) override;

    /// Reads four bytes. After a failure `value` may have changed in part.
    unsigned int Read(unsigned int& value) override;

    /// Reads exactly `size` bytes. After a failure `data` begins with those that were left.
    unsigned int Read(void* data, unsigned int size) override;

    /// The low 32 bits of the file's length in bytes; 0 when it is not open, and for a pipe.
    unsigned int Length() const override;

private:
    bool IsOpen() const;

    std::unique_ptr<StreamFile> m_file; // null when it is not open
};

} // namespace Toolkit
