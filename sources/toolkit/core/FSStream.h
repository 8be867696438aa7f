#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/IStream.h"
#include "toolkit/core/TString.h"

#include <memory>

namespace Toolkit {

class StreamFile;

/// Writes strings, integers and blocks of bytes to a file, and reads them back.
///
///     FSStream out(L"state.bin", FSStream::OpenWrite);
///     out.Write(TString<wchar_t>(L"Ann"));
///     out.Write(42u);
///
/// Integers and characters are stored as they are in memory, so a host with another byte order
/// cannot read the file. One object is used by one thread at a time. Nothing is thrown or logged.
///
/// Writes are not buffered: the system has the data when the operation returns. A regular file
/// opened with `OpenRead` is read up to 64 KiB ahead: the stream sees what another process appends,
/// but may miss what another process overwrites within those 64 KiB.
class TOOLKIT_API FSStream : public IStream {
public:
    /// Values of `wxFile::OpenMode`, whose other values are accepted too.
    enum OpenMode : int {
        OpenRead = 0, ///< Reads an existing file.
        OpenWrite = 1 ///< Creates the file or empties it.
    };

    /// Opens `path`. Blocks like open(2): a named pipe opens when its other end does. Every read
    /// and write returns `StreamResult::NotOpen` if opening fails, `path` is a directory, or memory
    /// runs out.
    FSStream(const TString<wchar_t>& path, OpenMode mode);
    ~FSStream() override;

    /// Writes the size in bytes with `Write(unsigned int)`, then the characters. If `text` is
    /// empty, writes a size of 0 and returns `StreamResult::Nothing`.
    ///
    /// Returns `StreamResult::WritePrefixFailed` if the size cannot be written, or does not fit
    /// into 32 bits.
    unsigned int Write(const TString<wchar_t>& text) override;

    /// Writes four bytes. Returns `StreamResult::WriteIntegerFailed` if the system writes fewer.
    unsigned int Write(unsigned int value) override;

    /// Writes `size` bytes. If `size` is 0, returns `StreamResult::Ok`, even if `data` is null.
    unsigned int Write(const void* data, unsigned int size) override;

    /// Reads the size in bytes with `Read(unsigned int&)`, then the characters. Stores in `text`
    /// the characters before the first null character.
    ///
    /// Returns `StreamResult::Nothing` for a size of 0. `text` is unchanged in that case and after
    /// a failure. If the size is not a multiple of 4, the incomplete last character is dropped.
    /// Memory use depends on the bytes read, not on the size that the file claims.
    unsigned int Read(TString<wchar_t>& text) override;

    /// Reads four bytes. After a failure, some bytes of `value` may have changed.
    unsigned int Read(unsigned int& value) override;

    /// Reads exactly `size` bytes. If fewer are left, stores those in `data` and fails. If `size`
    /// is 0, returns `StreamResult::Ok`, even if `data` is null.
    unsigned int Read(void* data, unsigned int size) override;

    /// Returns the low 32 bits of the file's length in bytes; 0 for a pipe or if no file is open.
    unsigned int Length() const override;

private:
    bool IsOpen() const;

    std::unique_ptr<StreamFile> m_file; // null when no file is open
};

} // namespace Toolkit
