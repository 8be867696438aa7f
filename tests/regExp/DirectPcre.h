#pragma once

#include <pcre.h>

#include <cstddef>
#include <string>

namespace Toolkit::TestSupport {

/// A pattern compiled and matched by direct calls to PCRE, for comparison.
class DirectPcre {
public:
    static constexpr int c_compileFailed = -1000;

    explicit DirectPcre(const std::string& pattern)
        : m_code(pcre_compile(pattern.c_str(), PCRE_UTF8, &m_errorText, &m_errorOffset, nullptr))
    {
    }
    ~DirectPcre() { pcre_free(m_code); }

    DirectPcre(const DirectPcre&) = delete;
    DirectPcre& operator=(const DirectPcre&) = delete;

    const pcre* Code() const { return m_code; }
    const int* Offsets() const { return m_offsets; }
    const char* ErrorText() const { return m_errorText; }
    int ErrorOffset() const { return m_errorOffset; }

    /// Returns the result of pcre_exec(), or `c_compileFailed`.
    int Execute(const std::string& subject, int start, int options)
    {
        if (!m_code)
            return c_compileFailed;
        return pcre_exec(m_code, nullptr, subject.data(), static_cast<int>(subject.size()), start,
                         options, m_offsets, c_offsetCount);
    }

    /// Returns the value of a group of the last match; empty if the group did not take part.
    std::string Value(const std::string& subject, int group) const
    {
        const int begin = m_offsets[2 * group];
        const int end = m_offsets[2 * group + 1];
        return begin < 0 || end < begin ? std::string()
                                        : subject.substr(static_cast<std::size_t>(begin),
                                                         static_cast<std::size_t>(end - begin));
    }

private:
    // As in MatchResult.
    static constexpr int c_offsetCount = 60;

    const char* m_errorText = nullptr;
    int m_errorOffset = 0;
    pcre* m_code;
    int m_offsets[c_offsetCount];
};

} // namespace Toolkit::TestSupport
