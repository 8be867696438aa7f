#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace Tool {

/// Thrown when the reader of standard output has closed the pipe.
class BrokenPipe : public std::exception {
public:
    const char* what() const noexcept override { return "broken pipe"; }
};

/// Standard output, in UTF-8 whatever the locale.
class Output {
public:
    /// Colours by their ANSI escape codes.
    enum Colour { Red = 31, Green = 32, Yellow = 33, Cyan = 36, Grey = 90 };

    Output();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    bool IsTerminal() const { return m_isTerminal; }

    /// Whether the output is a terminal that shows colours, and NO_COLOR is unset or empty.
    bool HasColours() const { return m_hasColours; }

    /// Writes `text` through a buffer. Throws `BrokenPipe`, or a `Failure` if writing fails.
    void Write(std::string_view text);

    /// Like Write() above, but in colour if the output shows colours.
    void Write(std::string_view text, Colour colour);

    /// Like Write(), but in the form of AppendVisible(), for untrusted text.
    void WriteVisible(std::string_view text);

    /// Writes what is still in the buffer. Throws like Write(); the contents of the buffer are then
    /// lost.
    void Flush();

    /// Waits `durationMs` milliseconds, or until a signal arrives. Throws `BrokenPipe` as soon as
    /// the output has lost its reader.
    void Sleep(int durationMs) const;

private:
    [[noreturn]] void FailToWrite();

    std::string m_pending;
    bool m_isTerminal;
    bool m_hasColours;
};

} // namespace Tool
