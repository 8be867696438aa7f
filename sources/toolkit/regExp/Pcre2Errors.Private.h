#pragma once

namespace Toolkit {

// What PCRE 2 reports, as the library reports it.

/// The number that PCRE 1 has for a negative result of pcre2_match(). An error without a
/// counterpart is PCRE 1's internal error.
int ToPcreError(int error);

/// Whether the result of pcre2_match() says that the subject is not UTF-8.
bool IsInvalidUtf8Error(int error);

/// Which fault of UTF-8 it is: 1 to 21, in both engines.
int ToUtf8Fault(int error);

/// The text of a compile error. It is never released.
const char* GetCompileErrorText(int error);

} // namespace Toolkit
