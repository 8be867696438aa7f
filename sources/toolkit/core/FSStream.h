#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/IStream.h"
#include "toolkit/core/TString.h"

#include <memory>

namespace Toolkit {

class StreamFile;

/// A stream over a file, without any buffer: a result tells of this very transfer.
///
/// Integers and characters are stored as they lie in memory, so files do not move between hosts of
/// different byte order. One object is used by one thread at a time. Nothing is thrown or logged.
class TOOLKIT_API FSStream : public IStream {
public:
    /// The framework's values; its other modes are taken as well.
    enum OpenMode : int {
        OpenRead = 0, ///< An existing file.
        OpenWrite = 1 ///< The file is created or emptied.
    };

    /// Opens `path`. When that fails, or finds something other than a file or a character device,
    /// every operation returns `StreamResult::NotOpen`.
    FSStream(const TString<wchar_t>& path, OpenMode mode);
    ~FSStream() override;

    /// Writes the size in bytes with `Write(unsigned int)` and the characters behind it. The empty
    /// text returns `StreamResult::Nothing`, its size of 0 is written.
    ///
    /// A text of 4 GiB or more has no size that could be written:
    /// `StreamResult::WritePrefixFailed`.
    unsigned int Write(const TString<wchar_t>& text) override;

    /// Writes four bytes; `StreamResult::WriteIntegerFailed` when they do not fit.
    unsigned int Write(unsigned int value) override;

    unsigned int Write(const void* data, unsigned int size) override;

    /// Reads the size in bytes with `Read(unsigned int&)` and the characters behind it, of which
    /// `text` gets those before the first null character.
    ///
    /// A size of 0 returns `StreamResult::Nothing` and leaves `text` as it is, like every failure.
    /// A size that is no multiple of 4 ends with a part of a character, which is dropped. No more
    /// memory is taken than the file has bytes for, whatever size it claims.
    unsigned int Read(TString<wchar_t>& text) override;

    /// Reads four bytes. After a failure `value` may have changed in part.
    unsigned int Read(unsigned int& value) override;

    /// Reads exactly `size` bytes. After a failure `data` holds those that were left.
    unsigned int Read(void* data, unsigned int size) override;

    /// The low 32 bits of the file's length in bytes; 0 when it is not open.
    unsigned int Length() const override;

private:
    bool IsOpen() const;

    std::unique_ptr<StreamFile> m_file; // null when it is not open
};

} // namespace Toolkit
