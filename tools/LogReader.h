#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "LogHeader.h"

namespace Tool {

/// A log line, with the further lines of its message. The views are valid until the next record is
/// read.
struct LogRecord {
    off_t offset = 0;
    std::string_view text;           ///< Without the last line feed.
    bool isEnded = false;            ///< Whether there was a last line feed.
    std::optional<LogHeader> header; ///< Empty if `text` does not begin like a log line.
};

/// Reads the records in a range of a file, in the order of the file and in constant memory: a
/// record of more than 1 MiB is split.
class LogReader {
public:
    /// Reads from `begin` to `end`. Does not close `file`.
    LogReader(int file, off_t begin, off_t end);

    /// Reads the next record; false at the end. Throws a `Failure` if the file cannot be read.
    bool Read(LogRecord& record);

private:
    struct Extent {
        std::size_t length;
        bool isEnded;
    };

    bool Fill();
    bool FillTo(std::size_t length);
    Extent FindEnd();
    std::string_view GetUnread() const { return {m_buffer.data() + m_used, m_filled - m_used}; }

    int m_file;
    off_t m_next; // the offset in the file where the contents of m_buffer end
    off_t m_end;
    std::vector<char> m_buffer;
    std::size_t m_used = 0;   // number of bytes in m_buffer that Read() has consumed
    std::size_t m_filled = 0; // number of bytes in m_buffer, including those
};

} // namespace Tool
