#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/IStream.h"
#include "toolkit/core/TString.h"

#include <memory>

namespace Toolkit {

class StreamFile;

/// A stream over a file, to which objects write themselves and from which they read themselves.
///
///     FSStream out(L"state.bin", FSStream::OpenWrite);
///     out.Write(TString<wchar_t>(L"Ann"));
///     out.Write(42u);
///
/// Integers and characters are stored as they are in memory, so a host with another byte order
/// cannot read the file. One object is used by one thread at a time. Nothing is thrown or logged.
///
/// Writes are not buffered: the data are in the file when the operation returns. From a regular
/// file that is open for reading only, the stream reads up to 64 KiB ahead: it sees what another
/// process appends, but may miss what another process overwrites in those 64 KiB.
class TOOLKIT_API FSStream : public IStream {
public:
    /// The values of `wxFile::OpenMode`; its other modes are accepted as well.
    enum OpenMode : int {
        OpenRead = 0, ///< Reads an existing file.
        OpenWrite = 1 ///< Creates the file or empties it.
    };

    /// Opens `path`. Blocks like open(2): a pipe opens when its other end does. If the file cannot
    /// be opened, if `path` is a directory, or when out of memory, every read and write returns
    /// `StreamResult::NotOpen`.
    FSStream(const TString<wchar_t>& path, OpenMode mode);
    ~FSStream() override;

    /// Writes the size in bytes with `Write(unsigned int)`, then the characters. For an empty
    /// `text` writes a size of 0 and returns `StreamResult::Nothing`.
    ///
    /// Returns `StreamResult::WritePrefixFailed` for a string of 4 GiB or more, whose size does not
    /// fit.
    unsigned int Write(const TString<wchar_t>& text) override;

    /// Writes four bytes. Returns `StreamResult::WriteIntegerFailed` if the system writes fewer.
    unsigned int Write(unsigned int value) override;

    /// Writes `size` bytes. For a size of 0 returns `StreamResult::Ok`, even if `data` is null.
    unsigned int Write(const void* data, unsigned int size) override;

    /// Reads the size in bytes with `Read(unsigned int&)`, then the characters. Stores those before
    /// the first null character in `text`.
    ///
    /// For a size of 0 returns `StreamResult::Nothing`. Then, and after a failure, `text` is
    /// unchanged. If the size is not a multiple of 4, the incomplete last character is
    /// dropped. Memory grows with the bytes read, not with the size that the file claims.
    unsigned int Read(TString<wchar_t>& text) override;

    /// Reads four bytes. After a failure, some bytes of `value` may have changed.
    unsigned int Read(unsigned int& value) override;

    /// Reads exactly `size` bytes. If fewer are left, stores those in `data` and fails. For a size
    /// of 0 returns `StreamResult::Ok`, even if `data` is null.
    unsigned int Read(void* data, unsigned int size) override;

    /// Returns the low 32 bits of the file's length in bytes; 0 if no file is open, and for a pipe.
    unsigned int Length() const override;

private:
    bool IsOpen() const;

    std::unique_ptr<StreamFile> m_file; // null when no file is open
};

} // namespace Toolkit
