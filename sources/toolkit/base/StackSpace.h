#pragma once

#include <cstddef>
#include <cstdint>

namespace Toolkit::Base {

/// The addresses of a thread's stack, which grows from `end` down to `begin`.
struct StackBounds {
    std::uintptr_t begin;
    std::uintptr_t end;
};

/// Returns the bounds of the stack that the system allocated for the calling thread; both are 0 if
/// unknown.
StackBounds GetStackBounds();

/// Returns how many bytes of its stack the calling thread has left below the caller's frame.
///
/// Assumes 32 KiB if IsOnThreadStack() is false.
std::size_t GetStackSpaceLeft();

/// Whether the caller runs on the stack that the system allocated for its thread. False in a
/// stackful coroutine and in a handler on an alternate signal stack, whose bounds are unknown. Also
/// false if the system does not report the bounds of the thread's stack.
bool IsOnThreadStack();

} // namespace Toolkit::Base
