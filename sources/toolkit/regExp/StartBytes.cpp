#include "toolkit/regExp/MatchResult.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/StartBytes.Private.h"

namespace Toolkit {
namespace {

// Bytes from this value up belong to multibyte characters. They are not tried: each counts as a
// byte that a match can begin with.
constexpr unsigned int c_firstNonAscii = 0x80;

} // namespace

StartBytes::StartBytes(const PatternCode& code, int options)
{
    m_bytes.set();
    int offsets[MatchResult::c_ovectorSize];
    const int trial = options | Pcre::c_trusted | Pcre::c_anchored | Pcre::c_partial;
    for (unsigned int byte = 0; byte < c_firstNonAscii; ++byte) {
        const char character = static_cast<char>(byte);
        // A trial that would read beyond this byte reports a partial match, so c_noMatch means that
        // no match begins with the byte.
        m_bytes[byte] = Pcre::Execute(code.get(), &character, 1, 0, trial, offsets,
                                      MatchResult::c_ovectorSize) != Pcre::c_noMatch;
    }
}

std::size_t StartBytes::FindFirst(std::string_view text, std::size_t start) const
{
    while (start < text.size() && !m_bytes[static_cast<unsigned char>(text[start])])
        ++start;
    return start;
}

} // namespace Toolkit
