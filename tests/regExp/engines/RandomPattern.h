#pragma once

#include "support/RandomText.h"

#include <cstddef>
#include <string>

namespace Toolkit::TestSupport {

/// Generates random patterns from the syntax that both engines support, and subjects, replacements
/// and search options for them.
class RandomPattern {
public:
    /// `hasRareConstructs` allows backtracking verbs, conditions and repeated assertions.
    RandomPattern(unsigned int seed, bool hasRareConstructs)
        : m_random(seed), m_hasRareConstructs(hasRareConstructs)
    {
    }

    std::string Pattern();
    std::string Subject();
    std::string Replacement();

    /// Returns random search options, usually none.
    int Options();
    RandomText& Random() { return m_random; }

private:
    std::string Alternatives(int depth);
    std::string Item(int depth);
    std::string Atom(int depth);
    std::string Group(int depth);

    template <std::size_t count>
    const char* AnyOf(const char* const (&strings)[count])
    {
        return strings[m_random.Number<std::size_t>(0, count - 1)];
    }
    bool OneIn(int count) { return m_random.Number(1, count) == 1; }

    RandomText m_random;
    bool m_hasRareConstructs;
};

} // namespace Toolkit::TestSupport
