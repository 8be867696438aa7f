#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <exception>

namespace Toolkit {

/// Thrown for a pattern that does not compile, and for a search that fails.
///
/// It is thrown by value in a `smart_ptr<RegExpException>`: catch that type. Apart from
/// `std::bad_alloc`, it is the only exception that leaves the library.
class TOOLKIT_API RegExpException : public std::exception {
public:
    RegExpException();
    RegExpException(const RegExpException&) = default;
    RegExpException& operator=(const RegExpException&) = default;
    ~RegExpException() override;

    /// Throws a new exception with that message in its `smart_ptr`. When out of memory, it throws
    /// one made when the library was loaded, with the message of an operation that ran out of
    /// memory.
    [[noreturn]] static void Throw(const TString<wchar_t>& message);

    /// Throws the exception made when the library was loaded.
    [[noreturn]] static void ThrowOutOfMemory();

    TString<char> message;  ///< UTF-8.
    TString<char> file;     ///< The path of this header in the source tree.
    TString<char> line;     ///< One byte, the number 7; not the digit.
    TString<char> function; ///< "Throw".

private:
    static smart_ptr<RegExpException> Make(const TString<wchar_t>& message);

    static const smart_ptr<RegExpException> s_outOfMemory;
};

} // namespace Toolkit
