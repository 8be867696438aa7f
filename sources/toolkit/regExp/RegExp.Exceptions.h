#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <exception>

namespace Toolkit {

/// Thrown when a pattern does not compile, when a search fails, and when out of memory.
///
/// It is thrown as a `smart_ptr<RegExpException>` by value: catch that type. Apart from
/// `std::bad_alloc`, it is the only exception that leaves the library.
class TOOLKIT_API RegExpException : public std::exception {
public:
    RegExpException();
    RegExpException(const RegExpException&) = default;
    RegExpException& operator=(const RegExpException&) = default;
    ~RegExpException() override;

    /// Throws a new exception with `message`. When out of memory, throws the same exception as
    /// ThrowOutOfMemory().
    [[noreturn]] static void Throw(const TString<wchar_t>& message);

    /// Throws an exception that was created when the library was loaded. Its message is that of a
    /// search that ran out of memory.
    [[noreturn]] static void ThrowOutOfMemory();

    TString<char> message;  ///< What failed, in UTF-8.
    TString<char> file;     ///< The path of this header in the source tree.
    TString<char> line;     ///< One byte with the value 7, not the digit.
    TString<char> function; ///< "Throw".

private:
    static smart_ptr<RegExpException> Create(const TString<wchar_t>& message);

    static const smart_ptr<RegExpException> s_outOfMemory;
};

} // namespace Toolkit
