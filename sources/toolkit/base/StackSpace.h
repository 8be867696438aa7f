#pragma once

#include <cstddef>
#include <cstdint>

namespace Toolkit::Base {

/// The addresses of a thread's stack, which grows from `end` down to `begin`.
struct StackBounds {
    std::uintptr_t begin;
    std::uintptr_t end;
};

/// The stack that the system gave to the calling thread; both 0 when it is unknown.
StackBounds GetStackBounds();

/// How many bytes of its stack the calling thread has left, counted from the caller's frame.
///
/// A small number is assumed on a stack that the system does not know.
std::size_t GetStackSpaceLeft();

/// Whether the caller runs on the stack that the system gave to its thread. False in a coroutine
/// and in a handler on an alternate signal stack, whose bounds are unknown.
bool IsOnThreadStack();

} // namespace Toolkit::Base
