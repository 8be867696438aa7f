#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

#include <memory>

class wxFFile;

namespace Toolkit {

/// A buffered file, opened with the mode texts of the C library.
///
/// Names are passed to the system in UTF-8, whatever the locale. One object is used by one thread
/// at a time; the destructor closes the file. Only the results report failures: nothing is thrown
/// or logged.
class TOOLKIT_API FFile {
public:
    FFile();
    ~FFile();

    /// Opens `name` with `mode`, such as "rb" or "a+", after closing what was open. False when it
    /// cannot be opened or is a directory. Programs that are started do not inherit the file.
    ///
    /// Opens pipes and devices too, and waits like open(2): a pipe until its other end is opened.
    bool Open(const TString<wchar_t>& name, const TString<wchar_t>& mode);

    bool IsOpened() const;

    /// Reads up to `count` bytes into `buffer`; true when at least one byte came. For how many,
    /// compare GetOffset() before and after.
    bool Read(void* buffer, unsigned int count);

    /// Writes `text` as UTF-8; reports no errors. A text that has no UTF-8 form, since it holds a
    /// value above U+10FFFF, is not written.
    void Write(const TString<wchar_t>& text);

    /// False when what is still buffered cannot be written; true when no file is open.
    bool Flush();

    /// False when what was still buffered could not be written; the file is closed all the same.
    /// True when no file is open.
    bool Close();

    /// The low 32 bits of the length in bytes: 5 for a file of 4 GiB and 5 bytes. 0 when no file is
    /// open, and for what has no length, such as a pipe.
    unsigned int GetLength() const;

    /// Whether a read reached the end of the file; true when no file is open.
    bool IsEOF() const;

    /// The position in bytes; -1 when no file is open, and in a pipe.
    long long GetOffset() const;

    /// Moves to `offset` bytes from the beginning with `start`, from the current position without.
    bool Seek(long long offset, bool start);

    /// Moves to `offset` bytes from the end: 0 is the end, negative values are before it.
    bool SeekEnd(long long offset);

    /// Whether a regular file of that name exists.
    static bool Exists(const TString<wchar_t>& name);

private:
    bool OpenClosed(const TString<wchar_t>& name, const TString<wchar_t>& mode);
    bool SeekTo(long long offset, int origin);

    std::unique_ptr<wxFFile> m_file;
};

} // namespace Toolkit
