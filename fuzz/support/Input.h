#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

/// Reads the values of a fuzz target from its input.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), size)
    {
    }

    /// Returns the next byte; 0 after the end.
    std::uint8_t ReadByte()
    {
        return m_next < m_bytes.size() ? static_cast<std::uint8_t>(m_bytes[m_next++])
                                       : std::uint8_t{0};
    }

    /// Returns the bytes up to the next `separator` or the end, each as the character with its
    /// value. Skips the separator.
    std::wstring ReadString(char separator)
    {
        const std::size_t end = std::min(m_bytes.find(separator, m_next), m_bytes.size());
        std::wstring text;
        for (; m_next < end; ++m_next)
            text.push_back(static_cast<unsigned char>(m_bytes[m_next]));
        m_next = std::min(end + 1, m_bytes.size());
        return text;
    }

    /// Returns all remaining bytes.
    std::string ReadRest() { return m_bytes.substr(std::exchange(m_next, m_bytes.size())); }

private:
    std::string m_bytes;
    std::size_t m_next = 0;
};
