#pragma once

namespace Toolkit {

// A stack of known size, for work on a stack that the system does not know, such as a coroutine's.

/// Runs `function` with `argument` on a thread of its own and waits for it; false when there is no
/// memory for one. The function throws nothing.
bool CallOnFreshStack(void (*function)(void*), void* argument);

/// Runs `operation`, which throws nothing, in the same way.
template <typename Operation>
bool RunOnFreshStack(Operation& operation)
{
    return CallOnFreshStack([](void* argument) { (*static_cast<Operation*>(argument))(); },
                            &operation);
}

} // namespace Toolkit
