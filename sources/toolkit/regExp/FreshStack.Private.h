#pragma once

namespace Toolkit {

// Runs functions on a stack of known size, for callers whose own stack is too small, or unknown to
// the system, such as that of a coroutine.

/// Runs `function` with `argument` on a new thread, where all signals are blocked, and waits for
/// it; false when the thread cannot be created. `function` must not throw.
bool CallOnFreshStack(void (*function)(void*), void* argument);

/// Runs `operation`, which must not throw, in the same way.
template <typename Operation>
bool RunOnFreshStack(Operation& operation)
{
    return CallOnFreshStack([](void* argument) { (*static_cast<Operation*>(argument))(); },
                            &operation);
}

} // namespace Toolkit
