#pragma once

#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

/// Reads short strings, separated by null characters, from the input of a fuzz target.
class PatternInput {
public:
    PatternInput(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), size)
    {
    }

    /// Returns the bytes up to the next separator or the end, truncated to `maxLength`. Skips the
    /// separator.
    std::string ReadString(std::size_t maxLength)
    {
        const std::size_t begin = m_next;
        const std::size_t end = std::min(m_bytes.find('\0', begin), m_bytes.size());
        m_next = std::min(end + 1, m_bytes.size());
        return m_bytes.substr(begin, std::min(end - begin, maxLength));
    }

private:
    std::string m_bytes;
    std::size_t m_next = 0;
};

/// The result of an operation: a string, or the message of its exception.
struct PatternOutcome {
    std::string text;
    std::string message;

    bool operator==(const PatternOutcome&) const = default;
};

template <typename Operation>
PatternOutcome GetOutcome(const Operation& operation)
{
    try {
        return {operation(), ""};
    } catch (const Toolkit::smart_ptr<Toolkit::RegExpException>& exception) {
        return {"", exception->message};
    }
}

/// Returns `pattern` with limits that stop a costly search early.
inline std::string AddLimits(const std::string& pattern)
{
    return "(*LIMIT_MATCH=5000)(*LIMIT_RECURSION=1000)" + pattern;
}
