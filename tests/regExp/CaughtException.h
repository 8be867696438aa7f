#pragma once

#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

namespace Toolkit::TestSupport {

/// What `operation` throws; an empty pointer when it returns.
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

/// The message of what `operation` throws; "nothing thrown" when it returns.
template <typename Operation>
TString<char> CaughtMessage(const Operation& operation)
{
    const smart_ptr<RegExpException> exception = CaughtException(operation);
    return exception.IsValid() ? exception->message : TString<char>("nothing thrown");
}

} // namespace Toolkit::TestSupport
