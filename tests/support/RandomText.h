#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace Toolkit::TestSupport {

/// Generates random numbers and strings. The same `seed` yields the same sequence in every run.
class RandomText {
public:
    explicit RandomText(unsigned int seed) : m_engine(seed) {}

    /// Returns a number from `first` to `last`, inclusive.
    template <typename Integer>
    Integer Number(Integer first, Integer last)
    {
        return std::uniform_int_distribution<Integer>(first, last)(m_engine);
    }

    /// Returns a string of at most `maxLength` characters from `alphabet`.
    template <typename Char>
    std::basic_string<Char> Text(const std::basic_string<Char>& alphabet, std::size_t maxLength)
    {
        std::basic_string<Char> text(Number<std::size_t>(0, maxLength), Char());
        for (Char& character : text)
            character = alphabet[Number<std::size_t>(0, alphabet.size() - 1)];
        return text;
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace Toolkit::TestSupport
