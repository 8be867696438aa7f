#pragma once

#include <cstddef>
#include <cstdint>

// Vectors of characters, for explicit vector code: some compilers unroll the plain loops instead of
// vectorizing them.
namespace Toolkit::Base {

template <typename Number>
struct LanesOf {
    // Not `using`: an alias would lose the attributes.
    typedef Number Type __attribute__((vector_size(16)));
    typedef Number Unaligned __attribute__((vector_size(16), aligned(1), may_alias));
};

/// Sixteen bytes of characters, as numbers of the type `Number`.
template <typename Number>
using Lanes = typename LanesOf<Number>::Type;

/// The number of characters in one vector.
template <typename Number>
constexpr std::size_t c_laneCount = sizeof(Lanes<Number>) / sizeof(Number);

/// Reads a vector of characters; `from` need not be aligned.
template <typename Number, typename Char>
Lanes<Number> LoadLanes(const Char* from)
{
    // WideToUtf8/script:0/bytes:10000: with memcpy(), GCC 14 splits the vector in two and joins it
    // again, which takes 1.7 times as long.
    static_assert(sizeof(Number) == sizeof(Char));
    return *reinterpret_cast<const typename LanesOf<Number>::Unaligned*>(from);
}

template <typename AnyLanes>
bool AreAllZero(const AnyLanes& lanes)
{
    // Reads the lanes from the register: with a copy in memory, the processor would wait for the
    // store.
    const auto halves = reinterpret_cast<Lanes<std::uint64_t>>(lanes);
    return (halves[0] | halves[1]) == 0;
}

} // namespace Toolkit::Base
