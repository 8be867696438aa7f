#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <sys/types.h>
#include <vector>

#include "LogHeader.h"

namespace Tool {

/// A line of a log with the lines of its message that follow it. Its text is valid until the
/// next record is read.
struct LogRecord {
    off_t offset = 0;
    std::string_view text;           ///< Without the last line feed.
    bool isEnded = false;            ///< Whether that line feed was there.
    std::optional<LogHeader> header; ///< Nothing for the rest of a line that was cut.
};

/// Reads the records in a range of a file, in the order of the file and in constant memory: text
/// of more than 1 MiB without the beginning of a line comes in pieces.
class LogReader {
public:
    /// Reads from `begin` to `end`. `file` stays the caller's.
    LogReader(int file, off_t begin, off_t end);

    /// False at the end. Throws a `Failure` when the file cannot be read.
    bool Read(LogRecord& record);

private:
    struct Extent {
        std::size_t length;
        bool isEnded;
    };

    bool Fill();
    bool HasAtLeast(std::size_t length);
    Extent FindEnd();
    std::string_view Rest() const { return {m_buffer.data() + m_used, m_filled - m_used}; }

    int m_file;
    off_t m_next; // where m_buffer ends
    off_t m_end;
    std::vector<char> m_buffer;
    std::size_t m_used = 0;
    std::size_t m_filled = 0;
};

} // namespace Tool
