#pragma once

namespace Toolkit {

// Translates what PCRE 2 reports into what the library reports.

/// Returns PCRE 1's code for a negative result of pcre2_match(); for an error without a
/// counterpart, the code of an internal error.
int ToPcreError(int error);

/// Whether a result of pcre2_match() means that the subject is not UTF-8.
bool IsInvalidUtf8Error(int error);

/// Returns the number of the UTF-8 fault, 1 to 21, which is the same in both engines.
int ToUtf8Fault(int error);

/// Returns the message of a compile error, a static string.
const char* GetCompileErrorMessage(int error);

} // namespace Toolkit
