#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Several characters that the processor handles at once, written out for compilers that would
/// rather unroll such a loop.
namespace Toolkit::Lanes {

template <typename Number>
struct Vector {
    // An alias would lose the attribute.
    typedef Number Type __attribute__((vector_size(16)));
};

/// Sixteen bytes of characters, as numbers of the type `Number`.
template <typename Number>
using Of = typename Vector<Number>::Type;

/// How many characters stand in one vector.
template <typename Number>
constexpr std::size_t c_count = sizeof(Of<Number>) / sizeof(Number);

/// Reads a vector of characters that may stand at any address.
template <typename Number, typename Char>
Of<Number> Load(const Char* from)
{
    static_assert(sizeof(Number) == sizeof(Char));
    Of<Number> lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

template <typename Lanes>
bool IsZero(const Lanes& lanes)
{
    // Taken out of the register: a copy in memory would be waited for.
    const auto halves = reinterpret_cast<Of<std::uint64_t>>(lanes);
    return (halves[0] | halves[1]) == 0;
}

} // namespace Toolkit::Lanes
