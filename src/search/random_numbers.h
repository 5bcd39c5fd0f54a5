// The reproducible random numbers of the search.
#pragma once

namespace vexor {

// A multiplicative congruential stream on doubles (multiplier 1389796, modulus 2^31 - 1): all intermediate
// values stay below 2^53, so that each draw is exact and the same on every machine.
class random_numbers {
public:
    // A value in [0, 1).
    double draw() {
        m_seed *= 1389796.0;
        double const q = static_cast<double>(static_cast<int>(m_seed / 2147483647.0));
        m_seed -= q * 2147483647.0;
        return m_seed / 2147483647.0;
    }
    // A value in [0, n).
    unsigned below(unsigned n) { return static_cast<unsigned>(draw() * n); }
    bool coin() { return below(2) >= 1; }

private:
    double m_seed = 91648253.0; // the state; survives a reset of the context
};

} // namespace vexor
