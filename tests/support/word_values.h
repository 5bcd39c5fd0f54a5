// The operators on vectors as functions of words, from their definitions. Widths are below 32, so that nothing
// overflows; results may have bits above the width.
#pragma once

#include <cstdint>

namespace vexor_test {

using word = std::uint64_t;

inline word ones(unsigned width) { return width >= 64 ? ~word{0} : (word{1} << width) - 1; }
inline bool sign_of(word w, unsigned width) { return ((w >> (width - 1)) & 1) != 0; }
inline std::int64_t to_signed(word w, unsigned width) {
    return static_cast<std::int64_t>(sign_of(w, width) ? w | ~ones(width) : w);
}

// Division by zero as SMT-LIB has it.
inline word udiv(word a, word b, unsigned width) { return b == 0 ? ones(width) : a / b; }
inline word urem(word a, word b) { return b == 0 ? a : a % b; }
// Towards zero.
inline word sdiv(word a, word b, unsigned width) {
    std::int64_t const x = to_signed(a, width), y = to_signed(b, width);
    if (y == 0) return x < 0 ? 1 : ones(width);
    return static_cast<word>(x / y);
}
// With the sign of the dividend.
inline word srem(word a, word b, unsigned width) {
    std::int64_t const x = to_signed(a, width), y = to_signed(b, width);
    return static_cast<word>(y == 0 ? x : x % y);
}
// With the sign of the divisor.
inline word smod(word a, word b, unsigned width) {
    std::int64_t const x = to_signed(a, width), y = to_signed(b, width);
    if (y == 0) return a;
    std::int64_t const r = x % y;
    return static_cast<word>(r != 0 && (r < 0) != (y < 0) ? r + y : r);
}

inline word shl(word a, word n, unsigned width) { return n >= width ? 0 : a << n; }
inline word lshr(word a, word n, unsigned width) { return n >= width ? 0 : a >> n; }
inline word ashr(word a, word n, unsigned width) {
    std::int64_t const x = to_signed(a, width);
    return static_cast<word>(n >= width ? (x < 0 ? -1 : 0) : x >> n);
}
inline word rotate_left(word a, unsigned n, unsigned width) {
    n %= width;
    return n == 0 ? a : (a << n) | (a >> (width - n));
}
inline word repeat(word a, unsigned n, unsigned width) {
    word result = 0;
    for (unsigned i = 0; i < n; ++i) result = (result << width) | a;
    return result;
}

} // namespace vexor_test
