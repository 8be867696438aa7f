#include "toolkit/base/StackSpace.h"

namespace Toolkit::Base {
namespace {

// Other stacks, such as those of stackful coroutines and signal handlers, have unknown bounds and
// can be this small.
constexpr std::size_t c_assumedSpace = std::size_t{32} * 1024;

// Returns the number of bytes left on the thread's stack at `here`; 0 if `here` is on another
// stack, or if the bounds of the thread's stack are unknown.
std::size_t MeasureSpaceBelow(std::uintptr_t here)
{
    // Cached: for the main thread GetStackBounds() reads a file in /proc, and stacks never move.
    static thread_local constinit StackBounds bounds{0, 0};
    if (bounds.end == 0)
        bounds = GetStackBounds();
    const bool isInside = here > bounds.begin && here <= bounds.end;
    return isInside ? here - bounds.begin : 0;
}

std::uintptr_t ToAddress(const void* frame)
{
    return reinterpret_cast<std::uintptr_t>(frame);
}

} // namespace

std::size_t GetStackSpaceLeft()
{
    const std::size_t space = MeasureSpaceBelow(ToAddress(__builtin_frame_address(0)));
    return space > 0 ? space : c_assumedSpace;
}

bool IsOnThreadStack()
{
    return MeasureSpaceBelow(ToAddress(__builtin_frame_address(0))) > 0;
}

} // namespace Toolkit::Base
