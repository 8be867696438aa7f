#pragma once

#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

namespace Toolkit::TestSupport {

/// Returns what `operation` throws; an empty pointer if it throws nothing.
template <typename Operation>
smart_ptr<RegExpException> CaughtException(const Operation& operation)
{
    try {
        operation();
    } catch (const smart_ptr<RegExpException>& exception) {
        return exception;
    }
    return smart_ptr<RegExpException>();
}

/// Returns the message of what `operation` throws; "nothing thrown" if it throws nothing.
template <typename Operation>
TString<char> CaughtMessage(const Operation& operation)
{
    const smart_ptr<RegExpException> exception = CaughtException(operation);
    return exception.IsValid() ? exception->message : TString<char>("nothing thrown");
}

} // namespace Toolkit::TestSupport
