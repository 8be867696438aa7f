#pragma once

#include <string_view>

/// Allocations that fail on purpose. A program that uses them must compile AllocationFault.cpp and
/// OutOfMemory.cpp, which replace operator new and operator delete, and also malloc(), calloc() and
/// realloc() unless a sanitizer does.
namespace Toolkit::TestSupport {

/// Whose code asked for the memory, directly or through the standard library.
enum class Origin {
    Library, ///< libtoolkit, and the program, which inlines code of libtoolkit's headers.
    Foreign  ///< wxWidgets, ICU, PCRE and the C library.
};

/// Whether the allocations after a failed one fail too.
enum class Persistence { Once, FromThenOn };

/// While it exists, makes allocation number `index` of `origin` fail, and with
/// Persistence::FromThenOn all later ones of `origin` too. Index 0 is the next allocation; those of
/// all threads are counted together. Only one object may exist at a time.
class AllocationFault {
public:
    AllocationFault(Origin origin, Persistence persistence, long index);
    ~AllocationFault();

    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;

    /// Whether the allocation `index` of the latest object was reached, and so failed.
    static bool HasFailed();

    /// The file name of the module whose allocation failed first, such as "libwx_baseu-3.2.so.0".
    /// "?" if the module is unknown, empty if no allocation failed. A signal handler may call it.
    static std::string_view FailedModule();
};

} // namespace Toolkit::TestSupport
