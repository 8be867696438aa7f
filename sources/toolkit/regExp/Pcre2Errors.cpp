#include "toolkit/regExp/Pcre2Errors.Private.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <algorithm>
#include <iterator>

namespace Toolkit {
namespace {

struct Translation {
    int pcre2;
    int pcre;
};

// The right column is from pcreapi(3), "Error return values from pcre_exec()".
constexpr Translation c_translations[] = {
    {PCRE2_ERROR_NOMATCH, -1},
    {PCRE2_ERROR_NULL, -2},
    {PCRE2_ERROR_BADOPTION, -3},
    {PCRE2_ERROR_BADMAGIC, -4},
    {PCRE2_ERROR_NOMEMORY, -6},
    {PCRE2_ERROR_MATCHLIMIT, -8},
    {PCRE2_ERROR_CALLOUT, -9},
    {PCRE2_ERROR_BADUTFOFFSET, -11},
    {PCRE2_ERROR_PARTIAL, -12},
    {PCRE2_ERROR_INTERNAL, -14},
    {PCRE2_ERROR_DEPTHLIMIT, -21},
    {PCRE2_ERROR_BADOFFSET, -24},
    {PCRE2_ERROR_RECURSELOOP, -26},
    {PCRE2_ERROR_JIT_STACKLIMIT, -27},
    {PCRE2_ERROR_BADMODE, -28},
    {PCRE2_ERROR_JIT_BADOPTION, -31},
    // PCRE 2 keeps its frames on the heap, PCRE 1 on the stack.
    {PCRE2_ERROR_HEAPLIMIT, -21}};

constexpr int c_invalidUtf8 = -10;
constexpr int c_internalError = -14;

// Compile errors are above 100, except for a pattern that is not UTF-8, whose error is negative.
constexpr int c_lastCompileError = 255;
constexpr int c_lowestError = -100;

// The messages of all errors, read once: callers need static strings, but the engine copies each
// message into the caller's buffer.
class Messages {
public:
    Messages()
    {
        for (int error = c_lowestError; error <= c_lastCompileError; ++error)
            pcre2_get_error_message(error, reinterpret_cast<PCRE2_UCHAR*>(GetMessage(error)),
                                    c_maxLength);
    }

    const char* Find(int error)
    {
        return error >= c_lowestError && error <= c_lastCompileError ? GetMessage(error)
                                                                     : "unknown error";
    }

private:
    // In bytes, with the null character. Longer messages are truncated.
    static constexpr int c_maxLength = 128;

    char* GetMessage(int error) { return m_messages[error - c_lowestError]; }

    char m_messages[c_lastCompileError - c_lowestError + 1][c_maxLength]{};
};

} // namespace

int ToPcreError(int error)
{
    if (IsInvalidUtf8Error(error))
        return c_invalidUtf8;
    const auto* const found =
        std::find_if(std::begin(c_translations), std::end(c_translations),
                     [&](const Translation& translation) { return translation.pcre2 == error; });
    return found != std::end(c_translations) ? found->pcre : c_internalError;
}

bool IsInvalidUtf8Error(int error)
{
    return error <= PCRE2_ERROR_UTF8_ERR1 && error >= PCRE2_ERROR_UTF8_ERR21;
}

int ToUtf8Fault(int error)
{
    return PCRE2_ERROR_UTF8_ERR1 - error + 1;
}

const char* GetCompileErrorMessage(int error)
{
    static Messages messages;
    return messages.Find(error);
}

} // namespace Toolkit
