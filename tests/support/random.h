// Reproducible random numbers for tests: the seed of a failing case is printed and can be given again.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace vexor_test {

// A splitmix64 stream: small, fast, and the same on every platform, unlike the standard distributions.
class random_stream {
public:
    explicit random_stream(std::uint64_t seed)
        : m_state(seed) {}

    std::uint64_t next() {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15ull);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
        return z ^ (z >> 31);
    }

    // A number in [0, n); n must not be 0.
    unsigned below(unsigned n) { return static_cast<unsigned>(next() % n); }

    // A number in [low, high].
    int between(int low, int high) {
        return low + static_cast<int>(next() % (static_cast<std::uint64_t>(high) - low + 1));
    }

    bool chance(unsigned percent) { return below(100) < percent; }

private:
    std::uint64_t m_state;
};

// The first seed of a randomized test: VEXOR_SEED from the environment, or the test's own fixed one.
inline std::uint64_t first_seed(std::uint64_t fixed) {
    char const* text = std::getenv("VEXOR_SEED");
    return text ? std::strtoull(text, nullptr, 0) : fixed;
}

// How many rounds a randomized test runs: its own number times VEXOR_ROUNDS (a factor, default 1).
inline unsigned rounds(unsigned fixed) {
    char const* text = std::getenv("VEXOR_ROUNDS");
    return text ? static_cast<unsigned>(fixed * std::strtod(text, nullptr)) : fixed;
}

} // namespace vexor_test
