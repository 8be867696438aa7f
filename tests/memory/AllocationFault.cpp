#include "memory/AllocationFault.h"

#include "support/OutOfMemory.h"
#include "support/Sanitizers.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <link.h>
#include <string_view>
#include <unwind.h>

#ifndef TOOLKIT_SANITIZER
// The C library's own names for the functions replaced below.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
#define TOOLKIT_REPLACES_MALLOC
#endif

namespace Toolkit::TestSupport {
namespace {

// Kinds of modules. Standard is the C++ standard library. CLibrary is the outermost caller on every
// stack, because it calls main() and thread functions.
enum class Kind { Program, Toolkit, Standard, CLibrary, Other };

// An executable segment of a loaded module. `module` stays valid because no module is unloaded
// during the sweep.
struct Segment {
    std::uintptr_t begin;
    std::uintptr_t end;
    const char* module;
    Kind kind;
};

std::array<Segment, 512> s_segments;
std::size_t s_segmentCount = 0;

std::atomic<bool> s_isArmed{false};
std::atomic<long> s_allocationsLeft{0};
std::atomic<const char*> s_failedModule{nullptr};
Origin s_origin = Origin::Library;
Persistence s_persistence = Persistence::Once;

thread_local bool t_isDeciding = false;

Kind ClassifyModule(std::string_view module)
{
    if (module.empty())
        return Kind::Program;
    if (module.find("libtoolkit.so") != std::string_view::npos)
        return Kind::Toolkit;
    if (module.find("/libc.so") != std::string_view::npos)
        return Kind::CLibrary;
    return module.find("libstdc++") != std::string_view::npos ? Kind::Standard : Kind::Other;
}

int AddSegments(dl_phdr_info* info, std::size_t, void*)
{
    for (int i = 0; i < info->dlpi_phnum && s_segmentCount < s_segments.size(); ++i) {
        const auto& header = info->dlpi_phdr[i];
        if (header.p_type != PT_LOAD || !(header.p_flags & PF_X))
            continue;
        const std::uintptr_t begin = info->dlpi_addr + header.p_vaddr;
        s_segments[s_segmentCount++] = {begin, begin + header.p_memsz, info->dlpi_name,
                                        ClassifyModule(info->dlpi_name)};
    }
    return 0;
}

const Segment* Find(std::uintptr_t address)
{
    for (std::size_t i = 0; i < s_segmentCount; ++i) {
        if (address >= s_segments[i].begin && address < s_segments[i].end)
            return &s_segments[i];
    }
    return nullptr;
}

struct Search {
    std::uintptr_t from;
    bool isReached;
    const Segment* found;
};

_Unwind_Reason_Code VisitFrame(_Unwind_Context* context, void* data)
{
    auto& search = *static_cast<Search*>(data);
    const std::uintptr_t address = _Unwind_GetIP(context);
    search.isReached = search.isReached || address == search.from;
    if (!search.isReached)
        return _URC_NO_REASON;
    const Segment* const segment = Find(address);
    if (!segment || segment->kind == Kind::Standard || segment->kind == Kind::Program)
        return _URC_NO_REASON;
    search.found = segment;
    return _URC_END_OF_STACK;
}

// Returns a segment of the module that requested the memory. Skips the standard library. Also skips
// the program, because every module may use the program's copies of standard library templates. So
// allocations of the program itself, including code inlined from the library's headers, are
// attributed to CLibrary.
const Segment* FindCaller(const void* returnAddress)
{
    const auto address = reinterpret_cast<std::uintptr_t>(returnAddress);
    const Segment* const direct = Find(address);
    if (direct && (direct->kind == Kind::Toolkit || direct->kind == Kind::Other))
        return direct;
    Search search{address, false, nullptr};
    _Unwind_Backtrace(&VisitFrame, &search);
    return search.found;
}

bool IsCounted(const Segment* caller, bool isCFunction)
{
    const bool isOurs = caller && (caller->kind == Kind::Toolkit ||
                                   (caller->kind == Kind::CLibrary && !isCFunction));
    return isOurs == (s_origin == Origin::Library);
}

bool ShouldFail(const void* returnAddress, bool isCFunction)
{
    if (!s_isArmed || t_isDeciding)
        return false;
    t_isDeciding = true;
    const Segment* const caller = isCFunction
                                      ? Find(reinterpret_cast<std::uintptr_t>(returnAddress))
                                      : FindCaller(returnAddress);
    bool fails = false;
    if (IsCounted(caller, isCFunction)) {
        const long left = s_allocationsLeft.fetch_sub(1);
        fails = left == 0 || (left < 0 && s_persistence == Persistence::FromThenOn);
        if (left == 0)
            s_failedModule = caller ? caller->module : "?";
    }
    t_isDeciding = false;
    return fails;
}

bool ShouldFailInNew(const void* returnAddress)
{
    return ShouldFail(returnAddress, false);
}

} // namespace

AllocationFault::AllocationFault(Origin origin, Persistence persistence, long index)
{
    // Read again each time, because plug-ins and ICU are loaded after the program.
    s_segmentCount = 0;
    ::dl_iterate_phdr(&AddSegments, nullptr);
    s_origin = origin;
    s_persistence = persistence;
    s_failedModule = nullptr;
    s_allocationsLeft = index;
    s_isArmed = true;
    SetAllocationRule(&ShouldFailInNew);
}

AllocationFault::~AllocationFault()
{
    SetAllocationRule(nullptr);
    s_isArmed = false;
}

bool AllocationFault::HasFailed()
{
    return s_allocationsLeft < 0;
}

std::string_view AllocationFault::FailedModule()
{
    const char* const module = s_failedModule;
    const std::string_view path = module ? module : "";
    return path.substr(path.rfind('/') + 1);
}

} // namespace Toolkit::TestSupport

#ifdef TOOLKIT_REPLACES_MALLOC
namespace {

// Calls from the standard library do not fail: they allocate exceptions, for which libstdc++ has an
// emergency pool anyway. Nor do calls from the program: its operator new has already applied the
// rule.
bool ShouldFailInC(const void* returnAddress)
{
    if (!Toolkit::TestSupport::s_isArmed || Toolkit::TestSupport::t_isDeciding)
        return false;
    const auto* const direct =
        Toolkit::TestSupport::Find(reinterpret_cast<std::uintptr_t>(returnAddress));
    return direct && direct->kind != Toolkit::TestSupport::Kind::Standard &&
           direct->kind != Toolkit::TestSupport::Kind::Program &&
           Toolkit::TestSupport::ShouldFail(returnAddress, true);
}

} // namespace

extern "C" __attribute__((noinline)) void* malloc(std::size_t size)
{
    return ShouldFailInC(__builtin_return_address(0)) ? nullptr : __libc_malloc(size);
}

extern "C" __attribute__((noinline)) void* calloc(std::size_t count, std::size_t size)
{
    return ShouldFailInC(__builtin_return_address(0)) ? nullptr : __libc_calloc(count, size);
}

extern "C" __attribute__((noinline)) void* realloc(void* memory, std::size_t size)
{
    return ShouldFailInC(__builtin_return_address(0)) ? nullptr : __libc_realloc(memory, size);
}
#endif
