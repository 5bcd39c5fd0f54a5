#include "unit/theories/bv/word_ops.h"

using namespace vexor;

namespace vexor_test {

namespace {

bits one(bit b) {
    bits result;
    result.push_back(b);
    return result;
}

bool fits_signed(std::int64_t value, unsigned width) {
    return value >= -(std::int64_t{1} << (width - 1)) && value < (std::int64_t{1} << (width - 1));
}

} // namespace

std::vector<word_op> all_word_ops() {
    using C = circuits;
    using B = bits const;
    std::vector<word_op> ops;
    auto add = [&](char const* name, unsigned arity, auto circuit, auto value) {
        ops.push_back({name, arity, circuit, value});
    };
    add(
        "not", 1, [](C&, B& a, B&) { return C::mk_not(a); }, [](word a, word, unsigned) { return ~a; });
    add(
        "and", 2, [](C& c, B& a, B& b) { return c.mk_and(a, b); },
        [](word a, word b, unsigned) { return a & b; });
    add(
        "or", 2, [](C& c, B& a, B& b) { return c.mk_or(a, b); },
        [](word a, word b, unsigned) { return a | b; });
    add(
        "xor", 2, [](C& c, B& a, B& b) { return c.mk_xor(a, b); },
        [](word a, word b, unsigned) { return a ^ b; });
    add(
        "ite", 2, [](C& c, B& a, B& b) { return c.mk_ite(a[0], b, C::mk_not(b)); },
        [](word a, word b, unsigned) { return a & 1 ? b : ~b; });
    add(
        "neg", 1, [](C& c, B& a, B&) { return c.mk_neg(a); }, [](word a, word, unsigned) { return 0 - a; });
    add(
        "add", 2, [](C& c, B& a, B& b) { return c.mk_add(a, b); },
        [](word a, word b, unsigned) { return a + b; });
    add(
        "sub", 2, [](C& c, B& a, B& b) { return c.mk_sub(a, b); },
        [](word a, word b, unsigned) { return a - b; });
    add(
        "add with carry", 2, [](C& c, B& a, B& b) { return c.mk_add_with_carry(a, b, true_bit); },
        [](word a, word b, unsigned) { return a + b + 1; });
    add(
        "mul", 2, [](C& c, B& a, B& b) { return c.mk_mul(a, b); },
        [](word a, word b, unsigned) { return a * b; });
    add(
        "square", 1, [](C& c, B& a, B&) { return c.mk_mul(a, a); },
        [](word a, word, unsigned) { return a * a; });
    add(
        "udiv", 2, [](C& c, B& a, B& b) { return c.mk_udiv(a, b); },
        [](word a, word b, unsigned w) { return b == 0 ? ones(w) : a / b; });
    add(
        "urem", 2, [](C& c, B& a, B& b) { return c.mk_urem(a, b); },
        [](word a, word b, unsigned) { return b == 0 ? a : a % b; });
    add(
        "sdiv", 2, [](C& c, B& a, B& b) { return c.mk_sdiv(a, b); }, sdiv);
    add(
        "srem", 2, [](C& c, B& a, B& b) { return c.mk_srem(a, b); }, srem);
    add(
        "smod", 2, [](C& c, B& a, B& b) { return c.mk_smod(a, b); }, smod);
    add(
        "shl", 2, [](C& c, B& a, B& b) { return c.mk_shl(a, b); },
        [](word a, word b, unsigned w) { return b >= w ? 0 : a << b; });
    add(
        "lshr", 2, [](C& c, B& a, B& b) { return c.mk_lshr(a, b); },
        [](word a, word b, unsigned w) { return b >= w ? 0 : a >> b; });
    add(
        "ashr", 2, [](C& c, B& a, B& b) { return c.mk_ashr(a, b); }, ashr);
    add(
        "rotate left by a vector", 2, [](C& c, B& a, B& b) { return c.mk_rotate_left(a, b); },
        [](word a, word b, unsigned w) { return rotate_left(a, static_cast<unsigned>(b), w); });
    add(
        "rotate right by a vector", 2, [](C& c, B& a, B& b) { return c.mk_rotate_right(a, b); },
        [](word a, word b, unsigned w) { return rotate_left(a, w - static_cast<unsigned>(b) % w, w); });
    add(
        "concat", 2, [](C&, B& a, B& b) { return C::concat(a, b); },
        [](word a, word b, unsigned w) { return (a << w) | b; });
    auto relate = [&](char const* name, auto circuit, auto value) {
        add(
            name, 2, [circuit](C& c, B& a, B& b) { return one(circuit(c, a, b)); }, value);
    };
    relate(
        "eq", [](C& c, B& a, B& b) { return c.mk_eq(a, b); },
        [](word a, word b, unsigned) { return a == b; });
    relate(
        "ult", [](C& c, B& a, B& b) { return c.mk_ult(a, b); },
        [](word a, word b, unsigned) { return a < b; });
    relate(
        "ule", [](C& c, B& a, B& b) { return c.mk_ule(a, b); },
        [](word a, word b, unsigned) { return a <= b; });
    relate(
        "slt", [](C& c, B& a, B& b) { return c.mk_slt(a, b); },
        [](word a, word b, unsigned w) { return to_signed(a, w) < to_signed(b, w); });
    relate(
        "sle", [](C& c, B& a, B& b) { return c.mk_sle(a, b); },
        [](word a, word b, unsigned w) { return to_signed(a, w) <= to_signed(b, w); });
    relate(
        "uadd overflow", [](C& c, B& a, B& b) { return c.mk_uadd_overflow(a, b); },
        [](word a, word b, unsigned w) { return a + b > ones(w); });
    relate(
        "sadd overflow", [](C& c, B& a, B& b) { return c.mk_sadd_overflow(a, b); },
        [](word a, word b, unsigned w) { return !fits_signed(to_signed(a, w) + to_signed(b, w), w); });
    relate(
        "usub overflow", [](C& c, B& a, B& b) { return c.mk_usub_overflow(a, b); },
        [](word a, word b, unsigned) { return a < b; });
    relate(
        "ssub overflow", [](C& c, B& a, B& b) { return c.mk_ssub_overflow(a, b); },
        [](word a, word b, unsigned w) { return !fits_signed(to_signed(a, w) - to_signed(b, w), w); });
    relate(
        "umul overflow", [](C& c, B& a, B& b) { return c.mk_umul_overflow(a, b); },
        [](word a, word b, unsigned w) { return a * b > ones(w); });
    relate(
        "smul overflow", [](C& c, B& a, B& b) { return c.mk_smul_overflow(a, b); },
        [](word a, word b, unsigned w) { return !fits_signed(to_signed(a, w) * to_signed(b, w), w); });
    relate(
        "sdiv overflow", [](C& c, B& a, B& b) { return c.mk_sdiv_overflow(a, b); },
        [](word a, word b, unsigned w) { return a == word{1} << (w - 1) && b == ones(w); });
    add(
        "neg overflow", 1, [](C& c, B& a, B&) { return one(c.mk_neg_overflow(a)); },
        [](word a, word, unsigned w) { return a == word{1} << (w - 1); });
    add(
        "redor", 1, [](C& c, B& a, B&) { return one(c.mk_redor(a)); },
        [](word a, word, unsigned) { return a != 0; });
    add(
        "redand", 1, [](C& c, B& a, B&) { return one(c.mk_redand(a)); },
        [](word a, word, unsigned w) { return a == ones(w); });
    add(
        "is zero", 1, [](C& c, B& a, B&) { return one(c.mk_is_zero(a)); },
        [](word a, word, unsigned) { return a == 0; });
    return ops;
}

std::vector<word_op> indexed_word_ops(unsigned width) {
    using C = circuits;
    using B = bits const;
    std::vector<word_op> ops;
    auto add = [&](std::string const& name, unsigned n, auto circuit, auto value) {
        ops.push_back({name + " " + std::to_string(n), 1, circuit, value});
    };
    for (unsigned n = 0; n <= width + 1; ++n) {
        add(
            "shift left 0", n, [n](C&, B& a, B&) { return C::shift_left(a, n, false_bit); },
            [n](word a, word, unsigned w) { return n >= w ? 0 : a << n; });
        add(
            "shift left 1", n, [n](C&, B& a, B&) { return C::shift_left(a, n, true_bit); },
            [n](word a, word, unsigned w) { return n >= w ? ~word{0} : (a << n) | ones(n); });
        add(
            "shift right 0", n, [n](C&, B& a, B&) { return C::shift_right(a, n, false_bit); },
            [n](word a, word, unsigned w) { return n >= w ? 0 : a >> n; });
        add(
            "shift right a", n, [n](C&, B& a, B&) { return C::shift_right(a, n, a.back()); },
            [n](word a, word, unsigned w) { return ashr(a, n, w); });
        add(
            "rotate left", n, [n](C&, B& a, B&) { return C::rotate_left(a, n); },
            [n](word a, word, unsigned w) { return rotate_left(a, n, w); });
        add(
            "zero extend", n, [n](C&, B& a, B&) { return C::zero_extend(a, n); },
            [](word a, word, unsigned) { return a; });
        add(
            "sign extend", n, [n](C&, B& a, B&) { return C::sign_extend(a, n); },
            [](word a, word, unsigned w) { return static_cast<word>(to_signed(a, w)); });
        if (n > 0)
            add(
                "repeat", n, [n](C&, B& a, B&) { return C::repeat(a, n); },
                [n](word a, word, unsigned w) {
                    word result = 0;
                    for (unsigned i = 0; i < n; ++i) result = (result << w) | a;
                    return result;
                });
        for (unsigned low = 0; low <= n && n < width; ++low)
            add(
                "extract " + std::to_string(low), n, [n, low](C&, B& a, B&) { return C::extract(a, n, low); },
                [low](word a, word, unsigned) { return a >> low; });
    }
    return ops;
}

} // namespace vexor_test
