#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <memory>

class wxFFile;

namespace Toolkit {

/// A buffered file, opened with the mode strings of the C library.
///
/// Names are passed to the system in UTF-8, whatever the locale. One object is used by one thread
/// at a time; the destructor closes the file. Only the results report failures: nothing is thrown
/// or logged.
class TOOLKIT_API FFile {
public:
    FFile();
    ~FFile();

    /// Closes the current file and opens `name` with `mode`, such as "rb" or "a+". False, with no
    /// file open, if `mode` is not valid, if `name` cannot be opened or is a directory, and when
    /// out of memory. Programs that the process starts do not inherit the file.
    ///
    /// Opens pipes and devices too, and blocks like open(2): a pipe opens when its other end does.
    bool Open(const TString<wchar_t>& name, const TString<wchar_t>& mode);

    bool IsOpened() const;

    /// Reads up to `count` bytes into `buffer`; true if it read at least one. For the number of
    /// bytes, compare GetOffset() before and after.
    bool Read(void* buffer, unsigned int count);

    /// Writes `text` as UTF-8; reports no errors. Writes nothing when out of memory, and if `text`
    /// contains a value that is negative or above U+10FFFF, which UTF-8 cannot encode.
    void Write(const TString<wchar_t>& text);

    /// Writes the buffered bytes. False if that fails; true if no file is open.
    bool Flush();

    /// Closes the file, even if the buffered bytes cannot be written; false in that case. True if
    /// no file is open.
    bool Close();

    /// Returns the low 32 bits of the length in bytes: 5 for a file of 4 GiB and 5 bytes. Writes
    /// the buffered bytes first, so that they count. 0 if no file is open, and for a file without a
    /// length, such as a pipe.
    unsigned int GetLength() const;

    /// Whether a read reached the end of the file; true if no file is open.
    bool IsEOF() const;

    /// Returns the position in bytes; -1 if no file is open, and for a pipe.
    long long GetOffset() const;

    /// Moves to `offset` bytes from the beginning if `start` is true, otherwise from the current
    /// position. False if no file is open, for a pipe, and for a position before the beginning; the
    /// position is then unchanged.
    bool Seek(long long offset, bool start);

    /// Like Seek(), but counts from the end: 0 is the end, negative values are before it.
    bool SeekEnd(long long offset);

    /// Whether a regular file `name` exists.
    static bool Exists(const TString<wchar_t>& name);

private:
    bool OpenAfterClosing(const TString<wchar_t>& name, const TString<wchar_t>& mode);
    bool SeekTo(long long offset, int origin);

    std::unique_ptr<wxFFile> m_file;
};

} // namespace Toolkit
