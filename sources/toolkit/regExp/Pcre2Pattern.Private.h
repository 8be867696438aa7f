#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace Toolkit {

/// A pattern compiled by PCRE 2, with what a search for it needs. Only one search at a time may use
/// an object.
class Pcre2Pattern {
public:
    struct Release {
        void operator()(pcre2_code* code) const { pcre2_code_free(code); }
        void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
        void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
    };
    template <typename Object>
    using Owned = std::unique_ptr<Object, Release>;
    using CodeOwner = Owned<pcre2_code>;

    /// The number of pairs of offsets that a search has room for.
    static constexpr int c_pairCount = 20;

    /// Translates `pattern` from the syntax of PCRE 1, but does not compile it.
    explicit Pcre2Pattern(const std::string& pattern);

    /// Returns 0, or the engine's error. PCRE2_ERROR_PARENTHESES_STACK_CHECK means that the stack
    /// is too small; Compile() may be called again on another one. When out of memory, returns the
    /// engine's error or throws `std::bad_alloc`.
    int Compile();
    bool IsCompiled() const { return m_code != nullptr; }

    /// The position of the error in Text(), in bytes.
    int ErrorOffset() const { return m_errorOffset; }

    const std::string& Text() const { return m_pattern; }
    const pcre2_code* Code() const { return m_code.get(); }

    /// Returns what pcre2_match() returns. Limits steps and memory.
    int Match(const char* subject, std::size_t length, std::size_t start, std::uint32_t options);

    /// Checks the whole subject. Returns the error of a subject that is not UTF-8, or
    /// PCRE2_ERROR_NOMEMORY if nothing was checked; ignore any other result.
    int CheckUtf8(const char* subject, std::size_t length, std::uint32_t options);

    /// Returns the pairs of the last match.
    const std::size_t* Offsets() const { return pcre2_get_ovector_pointer(m_matchData.get()); }

    /// Returns the offset of the first invalid character in the last subject.
    std::size_t FaultOffset() const { return pcre2_get_startchar(m_matchData.get()); }

private:
    bool PrepareMatch();

    std::string m_pattern;
    int m_errorOffset = 0;
    CodeOwner m_code;
    Owned<pcre2_match_data> m_matchData;
    Owned<pcre2_match_context> m_limits;
};

} // namespace Toolkit
