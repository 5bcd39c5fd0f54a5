// Every operation on numerals against GMP's rationals.
#include <gtest/gtest.h>

#include <gmp.h>
#include <string>
#include <vector>

#include "base/numeral.h"
#include "base/numeral_ext.h"
#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

// A GMP rational with the life of a C++ value.
class rational {
public:
    rational() { mpq_init(m_value); }
    explicit rational(numeral const& a)
        : rational() {
        mpq_set_str(m_value, a.to_string().c_str(), 10);
    }
    rational(rational const& other)
        : rational() {
        mpq_set(m_value, other.m_value);
    }
    rational& operator=(rational const& other) {
        mpq_set(m_value, other.m_value);
        return *this;
    }
    ~rational() { mpq_clear(m_value); }
    mpq_ptr get() const { return const_cast<mpq_ptr>(&m_value[0]); }
    mpz_ptr num() const { return mpq_numref(get()); }
    mpz_ptr den() const { return mpq_denref(get()); }
    std::string str() const {
        std::string result(mpz_sizeinbase(num(), 10) + mpz_sizeinbase(den(), 10) + 3, 0);
        mpq_get_str(result.data(), 10, get());
        return result.c_str();
    }

private:
    mpq_t m_value;
};

class numeral_random_test : public testing::Test {
protected:
    // Integers around the limits that matter to the representation, and small and huge ones.
    void pick_integer(random_stream& random, mpz_ptr out) {
        switch (random.below(8)) {
        case 0:
            mpz_set_si(out, random.between(-3, 3));
            break;
        case 1:
            mpz_set_si(out, random.between(-1000, 1000));
            break;
        case 2:
            mpz_set_si(out, numeral::max_fixnum + random.between(-3, 13));
            break;
        case 3:
            mpz_set_si(out, static_cast<long>(random.next()) >> random.below(64));
            break;
        case 4:
            mpz_set_si(out, (1l << random.below(63)) + random.between(-2, 2));
            break;
        case 5: // 2^62 ... 2^130
            mpz_set_ui(out, 1);
            mpz_mul_2exp(out, out, 60 + random.below(70));
            if (random.chance(50)) mpz_sub_ui(out, out, random.below(3));
            break;
        case 6:
            mpz_set_si(out, random.between(1, 30000) * long{random.between(1, 30000)});
            break;
        case 7:
            mpz_set_ui(out, random.next());
            mpz_mul_2exp(out, out, random.below(100));
            mpz_add_ui(out, out, random.next());
            break;
        }
        if (random.chance(40)) mpz_neg(out, out);
    }

    struct sample {
        numeral m_numeral;
        rational m_rational;
    };

    // A value and its form: fixnums are sometimes turned into bignums.
    sample pick(random_stream& random, bool integer) {
        sample s;
        pick_integer(random, s.m_rational.num());
        if (!integer && random.chance(60)) {
            do pick_integer(random, s.m_rational.den());
            while (mpz_sgn(s.m_rational.den()) == 0);
            mpq_canonicalize(s.m_rational.get());
        }
        s.m_numeral = numeral(s.m_rational.str().c_str(), 10);
        if (random.chance(25)) {
            numeral huge = numeral(2).expt(150);
            s.m_numeral += huge;
            s.m_numeral -= huge;
            EXPECT_FALSE(s.m_numeral.is_fixnum());
        }
        return s;
    }

    static void expect_same(numeral const& a, rational const& expected, char const* operation) {
        a.check_invariant();
        ASSERT_EQ(a.to_string(), expected.str()) << operation;
    }

    template <class F>
    void for_all_seeds(std::uint64_t fixed, unsigned n, F f) {
        unsigned used = numeral_pool::num_used();
        std::uint64_t first = vexor_test::first_seed(fixed);
        for (std::uint64_t seed = first; seed < first + vexor_test::rounds(n); seed++) {
            SCOPED_TRACE(seed);
            random_stream random(seed);
            f(random);
            if (HasFatalFailure()) return;
        }
        numeral_pool::check_invariant();
        EXPECT_EQ(numeral_pool::num_used(), used);
    }
};

TEST_F(numeral_random_test, arithmetic) {
    for_all_seeds(100, 30000, [&](random_stream& random) {
        sample a = pick(random, false);
        sample b = pick(random, false);
        SCOPED_TRACE(a.m_rational.str() + "  " + b.m_rational.str());
        rational r;
        mpq_add(r.get(), a.m_rational.get(), b.m_rational.get());
        expect_same(a.m_numeral + b.m_numeral, r, "+");
        mpq_sub(r.get(), a.m_rational.get(), b.m_rational.get());
        expect_same(a.m_numeral - b.m_numeral, r, "-");
        mpq_mul(r.get(), a.m_rational.get(), b.m_rational.get());
        expect_same(a.m_numeral * b.m_numeral, r, "*");
        if (mpq_sgn(b.m_rational.get()) != 0) {
            mpq_div(r.get(), a.m_rational.get(), b.m_rational.get());
            expect_same(a.m_numeral / b.m_numeral, r, "/");
        }
        // The operands are unharmed.
        expect_same(a.m_numeral, a.m_rational, "left");
        expect_same(b.m_numeral, b.m_rational, "right");
    });
}

TEST_F(numeral_random_test, an_operand_that_is_the_result) {
    for_all_seeds(200, 5000, [&](random_stream& random) {
        sample a = pick(random, false);
        SCOPED_TRACE(a.m_rational.str());
        rational r;
        numeral n(a.m_numeral);
        n += n;
        mpq_add(r.get(), a.m_rational.get(), a.m_rational.get());
        expect_same(n, r, "a += a");
        n = a.m_numeral;
        n -= *&n;
        expect_same(n, rational(), "a -= a");
        n = a.m_numeral;
        n *= n;
        mpq_mul(r.get(), a.m_rational.get(), a.m_rational.get());
        expect_same(n, r, "a *= a");
        n = a.m_numeral;
        if (!n.is_zero()) {
            n /= *&n;
            mpq_set_si(r.get(), 1, 1);
            expect_same(n, r, "a /= a");
        }
        n = a.m_numeral;
        n = *&n;
        expect_same(n, a.m_rational, "a = a");
        n = std::move(*&n);
        expect_same(n, a.m_rational, "a = move(a)");
        if (!n.is_int()) return;
        n |= *&n;
        n &= *&n;
        expect_same(n, a.m_rational, "a |= a, a &= a");
        EXPECT_EQ(gcd(n, n), abs(n));
        n ^= *&n;
        expect_same(n, rational(), "a ^= a");
    });
}

TEST_F(numeral_random_test, chains_of_operations_in_place) {
    for_all_seeds(300, 300, [&](random_stream& random) {
        sample a = pick(random, false);
        for (int step = 0; step < 30; step++) {
            sample b = pick(random, false);
            switch (random.below(5)) {
            case 0:
                a.m_numeral += b.m_numeral;
                mpq_add(a.m_rational.get(), a.m_rational.get(), b.m_rational.get());
                break;
            case 1:
                a.m_numeral -= b.m_numeral;
                mpq_sub(a.m_rational.get(), a.m_rational.get(), b.m_rational.get());
                break;
            case 2:
                a.m_numeral *= b.m_numeral;
                mpq_mul(a.m_rational.get(), a.m_rational.get(), b.m_rational.get());
                break;
            case 3:
                if (b.m_numeral.is_zero()) break;
                a.m_numeral /= b.m_numeral;
                mpq_div(a.m_rational.get(), a.m_rational.get(), b.m_rational.get());
                break;
            case 4:
                a = b;
                break;
            }
            expect_same(a.m_numeral, a.m_rational, "chain");
        }
    });
}

TEST_F(numeral_random_test, comparison) {
    for_all_seeds(400, 20000, [&](random_stream& random) {
        sample a = pick(random, false);
        sample b = random.chance(20) ? a : pick(random, false);
        SCOPED_TRACE(a.m_rational.str() + "  " + b.m_rational.str());
        int order = mpq_cmp(a.m_rational.get(), b.m_rational.get());
        ASSERT_EQ(a.m_numeral == b.m_numeral, order == 0);
        ASSERT_EQ(a.m_numeral != b.m_numeral, order != 0);
        ASSERT_EQ(a.m_numeral < b.m_numeral, order < 0);
        ASSERT_EQ(a.m_numeral <= b.m_numeral, order <= 0);
        ASSERT_EQ(a.m_numeral > b.m_numeral, order > 0);
        ASSERT_EQ(a.m_numeral >= b.m_numeral, order >= 0);
        int sign = mpq_sgn(a.m_rational.get());
        ASSERT_EQ(a.m_numeral.is_zero(), sign == 0);
        ASSERT_EQ(a.m_numeral.is_neg(), sign < 0);
        ASSERT_EQ(a.m_numeral.is_pos(), sign > 0);
        ASSERT_EQ(a.m_numeral.is_one(), mpq_cmp_si(a.m_rational.get(), 1, 1) == 0);
        ASSERT_EQ(a.m_numeral.is_minus_one(), mpq_cmp_si(a.m_rational.get(), -1, 1) == 0);
        ASSERT_EQ(a.m_numeral.is_int(), mpz_cmp_ui(a.m_rational.den(), 1) == 0);
        // The same value in another form: equal, with an equal hash.
        numeral other = numeral(2).expt(300);
        other += a.m_numeral;
        other -= numeral(2).expt(300);
        ASSERT_EQ(other, a.m_numeral);
        ASSERT_EQ(a.m_numeral, other);
        ASSERT_EQ(other.hash(), a.m_numeral.hash());
    });
}

TEST_F(numeral_random_test, rounding_signs_and_text) {
    for_all_seeds(500, 10000, [&](random_stream& random) {
        sample a = pick(random, false);
        SCOPED_TRACE(a.m_rational.str());
        rational r;
        mpz_fdiv_q(r.num(), a.m_rational.num(), a.m_rational.den());
        expect_same(floor(a.m_numeral), r, "floor");
        mpq_sub(r.get(), a.m_rational.get(), r.get());
        expect_same(fractional_part(a.m_numeral), r, "fractional_part");
        mpq_set_ui(r.get(), 0, 1);
        mpz_cdiv_q(r.num(), a.m_rational.num(), a.m_rational.den());
        expect_same(ceil(a.m_numeral), r, "ceil");
        mpq_neg(r.get(), a.m_rational.get());
        expect_same(-a.m_numeral, r, "neg");
        mpq_abs(r.get(), a.m_rational.get());
        expect_same(abs(a.m_numeral), r, "abs");
        numeral again(a.m_numeral.to_string().c_str(), 10);
        ASSERT_EQ(again, a.m_numeral);
        a.m_numeral.get_mpq(r.get());
        expect_same(a.m_numeral, r, "get_mpq");
        ASSERT_EQ(numeral(a.m_rational.get()), a.m_numeral);
        ASSERT_EQ(a.m_numeral.numerator() / a.m_numeral.denominator(), a.m_numeral);
        int n = random.between(0, 7);
        rational power;
        mpz_pow_ui(power.num(), a.m_rational.num(), static_cast<unsigned long>(n));
        mpz_pow_ui(power.den(), a.m_rational.den(), static_cast<unsigned long>(n));
        expect_same(a.m_numeral.expt(n), power, "expt");
    });
}

TEST_F(numeral_random_test, integers) {
    for_all_seeds(600, 15000, [&](random_stream& random) {
        sample a = pick(random, true);
        sample b = pick(random, true);
        SCOPED_TRACE(a.m_rational.str() + "  " + b.m_rational.str());
        mpz_ptr x = a.m_rational.num();
        mpz_ptr y = b.m_rational.num();
        rational r;
        mpz_gcd(r.num(), x, y);
        expect_same(gcd(a.m_numeral, b.m_numeral), r, "gcd");
        mpz_lcm(r.num(), x, y);
        if (mpz_sgn(x) * mpz_sgn(y) < 0) mpz_neg(r.num(), r.num());
        expect_same(lcm(a.m_numeral, b.m_numeral), r, "lcm");
        if (mpz_sgn(y) != 0) {
            mpz_tdiv_q(r.num(), x, y);
            expect_same(div(a.m_numeral, b.m_numeral), r, "div");
            mpz_mod(r.num(), x, y);
            expect_same(mod(a.m_numeral, b.m_numeral), r, "mod");
        }
        mpz_ior(r.num(), x, y);
        expect_same(a.m_numeral | b.m_numeral, r, "|");
        mpz_and(r.num(), x, y);
        expect_same(a.m_numeral & b.m_numeral, r, "&");
        mpz_xor(r.num(), x, y);
        expect_same(a.m_numeral ^ b.m_numeral, r, "^");
        unsigned k = random.below(random.chance(50) ? 34 : 150);
        mpz_fdiv_r_2exp(r.num(), x, k);
        expect_same(mod_2k(a.m_numeral, k), r, "mod_2k");
        mpz_mul_2exp(r.num(), x, k);
        expect_same(a.m_numeral << k, r, "<<");
        mpz_fdiv_q_2exp(r.num(), x, k);
        expect_same(a.m_numeral >> k, r, ">>");
        mpz_set_ui(r.num(), 1);
        mpz_mul_2exp(r.num(), r.num(), k);
        mpz_sub_ui(r.num(), r.num(), 1);
        mpz_xor(r.num(), r.num(), x);
        numeral flipped(a.m_numeral);
        flipped.bitwise_complement(k);
        expect_same(flipped, r, "bitwise_complement");
        ASSERT_EQ(a.m_numeral.test_bit(k), mpz_tstbit(x, k) != 0);
        ASSERT_EQ(a.m_numeral.num_bits(), mpz_sizeinbase(x, 2));
        ASSERT_EQ(a.m_numeral.fits_long(), mpz_fits_slong_p(x) != 0);
        ASSERT_EQ(a.m_numeral.fits_int(), mpz_fits_sint_p(x) != 0);
        ASSERT_EQ(a.m_numeral.fits_unsigned(), mpz_fits_uint_p(x) != 0);
        if (a.m_numeral.fits_long()) {
            ASSERT_EQ(a.m_numeral.get_long(), mpz_get_si(x));
        }
        mpz_set_ui(r.num(), 0);
        a.m_numeral.get_mpz(r.num());
        ASSERT_EQ(mpz_cmp(r.num(), x), 0);
        ASSERT_EQ(numeral(x), a.m_numeral);
        for (int base : {2, 16}) {
            std::string text(mpz_sizeinbase(x, base) + 2, 0);
            mpz_get_str(text.data(), base, x);
            ASSERT_EQ(numeral(text.c_str(), base), a.m_numeral) << text;
        }
    });
}

TEST_F(numeral_random_test, arithmetic_on_results_of_bit_operations) {
    for_all_seeds(700, 5000, [&](random_stream& random) {
        // Within [-2^30, 2^30 - 1], by bit operations from fixnums.
        numeral a(random.between(-numeral::max_fixnum, numeral::max_fixnum));
        if (random.chance(50)) a |= numeral(random.below(16));
        if (random.chance(30)) a &= numeral(-(1 << random.below(30)));
        numeral b(random.chance(50) ? (1 << 30) - 20 : -(1 << 30) + 20);
        b ^= numeral(random.below(32));
        rational x(a);
        rational y(b);
        rational r;
        mpq_add(r.get(), x.get(), y.get());
        expect_same(a + b, r, "+");
        mpq_sub(r.get(), x.get(), y.get());
        expect_same(a - b, r, "-");
        mpq_mul(r.get(), x.get(), y.get());
        expect_same(a * b, r, "*");
        mpq_div(r.get(), x.get(), y.get());
        expect_same(a / b, r, "/");
        mpq_neg(r.get(), y.get());
        expect_same(-b, r, "neg");
    });
}

TEST_F(numeral_random_test, words_are_reduced_as_by_gmp) {
    for_all_seeds(800, 5000, [&](random_stream& random) {
        auto n = static_cast<long long>(random.next()) >> random.below(63);
        auto d = static_cast<long long>(random.next() >> (1 + random.below(62)));
        if (d == 0) d = 1;
        rational r;
        mpz_set_si(r.num(), n);
        mpz_set_si(r.den(), d);
        mpq_canonicalize(r.get());
        normalize_ll_posden(n, d);
        ASSERT_EQ(mpz_cmp_si(r.num(), n), 0);
        ASSERT_EQ(mpz_cmp_si(r.den(), d), 0);
    });
}

// With numbers in place of the infinitesimal, small against all differences that occur.
TEST_F(numeral_random_test, infinitesimals_behave_like_small_numbers) {
    numeral delta = numeral(1) / numeral(2).expt(40);
    for_all_seeds(900, 5000, [&](random_stream& random) {
        auto pick_small = [&] { return numeral(random.between(-9, 9)) / random.between(1, 6); };
        auto value = [&](numeral_ext const& x) { return x.get_real() + x.get_delta() * delta; };
        numeral_ext a(pick_small(), pick_small());
        numeral_ext b(random.chance(30) ? a.get_real() : pick_small(), pick_small());
        numeral c = pick_small();
        ASSERT_EQ(value(a + b), value(a) + value(b));
        ASSERT_EQ(value(a - b), value(a) - value(b));
        ASSERT_EQ(value(-a), -value(a));
        ASSERT_EQ(value(a * c), value(a) * c);
        if (!c.is_zero()) {
            ASSERT_EQ(value(a / c), value(a) / c);
        }
        ASSERT_EQ(a < b, value(a) < value(b));
        ASSERT_EQ(a <= b, value(a) <= value(b));
        ASSERT_EQ(a > b, value(a) > value(b));
        ASSERT_EQ(a >= b, value(a) >= value(b));
        ASSERT_EQ(a == b, value(a) == value(b));
        ASSERT_EQ(a.is_zero(), value(a).is_zero());
        ASSERT_EQ(a.is_pos(), value(a).is_pos());
        ASSERT_EQ(a.is_neg(), value(a).is_neg());
        ASSERT_EQ(a.is_int(), value(a).is_int());
        ASSERT_EQ(floor(a), floor(value(a)));
        ASSERT_EQ(ceil(a), ceil(value(a)));
        // update_delta: a <= b must hold with the new value, and would fail for any larger one if it was
        // lowered.
        if (!(a <= b)) return;
        numeral d(1);
        update_delta(a, b, d);
        auto with = [&](numeral_ext const& x, numeral const& e) { return x.get_real() + x.get_delta() * e; };
        ASSERT_TRUE(d.is_pos() && d <= numeral(1));
        ASSERT_TRUE(with(a, d) <= with(b, d));
        if (d < numeral(1)) {
            ASSERT_TRUE(with(a, d * 2) > with(b, d * 2));
        }
    });
}

} // namespace
} // namespace vexor
