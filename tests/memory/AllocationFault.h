#pragma once

#include <string_view>

/// Allocations that fail on purpose. A program that uses this compiles AllocationFault.cpp and
/// ScarceMemory.cpp into itself: they replace the operators new and delete, and malloc() where no
/// sanitizer does.
namespace Toolkit::TestSupport {

/// Whose allocation it is: that of the code that asked for it, directly or through the standard
/// library.
enum class Origin {
    Library, ///< libtoolkit, or its headers' code inlined into the program.
    Foreign  ///< wxWidgets, ICU, PCRE and the C library.
};

/// Whether the allocations after a failed one fail too.
enum class Lasting { Once, FromThenOn };

/// Lets allocation number `index` of `origin` fail, the next one for 0, on whichever thread, as
/// long as the object lives.
class AllocationFault {
public:
    AllocationFault(Origin origin, Lasting lasting, long index);
    ~AllocationFault();

    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// Whether there were that many allocations.
    static bool HasFailed();

    /// The file name of the module whose allocation failed first, such as "libwx_baseu-3.2.so.0".
    /// Empty when none did. A signal handler may call it.
    static std::string_view FailedModule();
};

} // namespace Toolkit::TestSupport
