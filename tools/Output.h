#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>

namespace Tool {

/// Thrown when the reader of standard output has gone.
class BrokenPipe : public std::exception {
public:
    const char* what() const noexcept override { return "broken pipe"; }
};

/// Standard output, in UTF-8 whatever the locale.
class Output {
public:
    /// Numbers of the terminal's colours.
    enum Colour { Red = 31, Green = 32, Yellow = 33, Cyan = 36, Grey = 90 };

    Output();

    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    bool IsTerminal() const { return m_isTerminal; }

    /// Whether the output is a terminal that shows colours, and NO_COLOR is not set.
    bool HasColours() const { return m_hasColours; }

    /// Writes `text`, possibly later. Throws `BrokenPipe`, or `Failure` when it cannot.
    void Write(std::string_view text);

    /// The same in colour, if the output shows colours.
    void Write(std::string_view text, Colour colour);

    /// Writes `text` from elsewhere, with its control characters made visible.
    void WriteVisible(std::string_view text);

    /// Writes everything that is still pending.
    void Flush();

    /// Waits `durationMs` milliseconds, or until a signal comes. Throws `BrokenPipe` as soon as
    /// nobody reads the output.
    void Sleep(int durationMs) const;

private:
    std::string m_pending;
    bool m_isTerminal;
    bool m_hasColours;
};

} // namespace Tool
