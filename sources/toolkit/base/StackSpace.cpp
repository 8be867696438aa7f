#include "toolkit/base/StackSpace.h"

namespace Toolkit::Base {
namespace {

// Stacks that programs make themselves, for coroutines and signal handlers, can be this small.
constexpr std::size_t c_assumedSpace = std::size_t{32} * 1024;

} // namespace

std::size_t GetStackSpaceLeft()
{
    // Asking costs a system call or a file of the kernel's; a thread keeps its stack.
    static thread_local constinit StackBounds bounds{0, 0};
    if (bounds.end == 0)
        bounds = GetStackBounds();
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    const bool isInside = here > bounds.begin && here <= bounds.end;
    return isInside ? here - bounds.begin : c_assumedSpace;
}

} // namespace Toolkit::Base
