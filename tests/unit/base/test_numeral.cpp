#include "base/numeral.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "base/exceptions.h"

namespace vexor {
namespace {

constexpr int limit = numeral::max_fixnum;

numeral read(char const* text) { return numeral(text, 10); }

// The value as a bignum, whatever its size.
numeral big(numeral const& value) {
    numeral result = numeral(2).expt(200);
    numeral huge = result;
    result += value;
    result -= huge;
    EXPECT_FALSE(result.is_fixnum());
    EXPECT_EQ(result, value);
    return result;
}

TEST(numeral_test, two_words_and_constants) {
    static_assert(sizeof(numeral) == 8);
    EXPECT_TRUE(numeral().is_zero());
    EXPECT_TRUE(numeral::m_zero.is_zero());
    EXPECT_TRUE(numeral::m_one.is_one());
    EXPECT_TRUE(numeral::m_minus_one.is_minus_one());
}

TEST(numeral_test, fixnums_end_at_the_limit) {
    EXPECT_TRUE(numeral(limit).is_fixnum());
    EXPECT_TRUE(numeral(-limit).is_fixnum());
    EXPECT_FALSE(numeral(limit + 1).is_fixnum());
    EXPECT_FALSE(numeral(-limit - 1).is_fixnum());
    numeral a(limit);
    a += 1;
    EXPECT_FALSE(a.is_fixnum());
    EXPECT_EQ(a.to_string(), "1073741814");
    numeral b(-limit);
    b -= 1;
    EXPECT_FALSE(b.is_fixnum());
    EXPECT_EQ(b.to_string(), "-1073741814");
    EXPECT_TRUE((numeral(1) / limit).is_fixnum());
    EXPECT_FALSE((numeral(1) / (limit + 1)).is_fixnum());
    EXPECT_EQ((numeral(1) / (limit + 1)).to_string(), "1/1073741814");
    // Reduced values within the range are fixnums although the products on the way are not.
    EXPECT_TRUE((numeral(limit) / 7 * 7).is_fixnum());
    EXPECT_TRUE((numeral(limit) / limit).is_one());
}

TEST(numeral_test, constructors_take_all_integers) {
    EXPECT_EQ(numeral(INT_MIN).to_string(), "-2147483648");
    EXPECT_EQ(numeral(UINT_MAX).to_string(), "4294967295");
    EXPECT_EQ(numeral(LONG_MIN).to_string(), "-9223372036854775808");
    EXPECT_EQ(numeral(ULONG_MAX).to_string(), "18446744073709551615");
    EXPECT_EQ(numeral(ULLONG_MAX).to_string(), "18446744073709551615");
    static_assert(!std::is_constructible_v<numeral, bool> && !std::is_constructible_v<numeral, double>);
}

TEST(numeral_test, bignums_stay_bignums) {
    numeral a(limit + 1);
    a -= *&a;
    EXPECT_FALSE(a.is_fixnum());
    EXPECT_TRUE(a.is_zero());
    EXPECT_EQ(a, numeral(0));
    EXPECT_EQ(numeral(0), a);
    EXPECT_TRUE(a.is_int());
    a += 7;
    EXPECT_FALSE(a.is_fixnum());
    EXPECT_FALSE(floor(a).is_fixnum());
    EXPECT_FALSE(ceil(a / 2).is_fixnum());
    EXPECT_FALSE(div(a, 2).is_fixnum());
    a = 3;
    EXPECT_TRUE(a.is_fixnum());
}

TEST(numeral_test, assignment_between_all_forms) {
    numeral fix(5);
    numeral one_big = read("100000000000000000000");
    numeral other_big = read("1/100000000000000000000");
    numeral a;
    a = fix;
    EXPECT_EQ(a, fix);
    a = one_big;
    EXPECT_EQ(a, one_big);
    a = other_big;
    EXPECT_EQ(a, other_big);
    a = *&a;
    EXPECT_EQ(a, other_big);
    a = fix;
    EXPECT_EQ(a, fix);
    a = *&a;
    EXPECT_EQ(a, fix);
    a = std::move(one_big);
    EXPECT_EQ(a.to_string(), "100000000000000000000");
    EXPECT_TRUE(one_big.is_zero());
    numeral b(std::move(a));
    a = std::move(b);
    EXPECT_EQ(a.to_string(), "100000000000000000000");
    a.swap(fix);
    EXPECT_EQ(a, numeral(5));
}

TEST(numeral_test, slots_are_reused_in_stack_order_and_never_lost) {
    unsigned before = numeral_pool::num_used();
    {
        std::vector<numeral> many;
        for (int i = 0; i < 3000; i++) { // the pool doubles on the way
            many.push_back(numeral(limit) + 1 + i);
            EXPECT_EQ(many[static_cast<unsigned>(i) / 2], numeral(limit + 1 + i / 2));
        }
        EXPECT_EQ(numeral_pool::num_used(), before + 3000);
        EXPECT_GE(numeral_pool::capacity(), 3000u);
        EXPECT_EQ(numeral_pool::capacity() & (numeral_pool::capacity() - 1), 0u);
        numeral_pool::check_invariant();
        EXPECT_FALSE(numeral_pool::free_big_nums());
        EXPECT_THROW(many[5] /= 0, division_by_zero_exception);
        EXPECT_THROW(read("99999999999/0"), division_by_zero_exception);
        EXPECT_EQ(numeral_pool::num_used(), before + 3000);
    }
    EXPECT_EQ(numeral_pool::num_used(), before);
}

TEST(numeral_test, the_pool_can_be_given_back_and_made_again) {
    ASSERT_EQ(numeral_pool::num_used(), 0u);
    EXPECT_TRUE(numeral_pool::free_big_nums());
    EXPECT_EQ(numeral_pool::capacity(), 0u);
    EXPECT_EQ(numeral(1).numerator(), numeral(1));
    EXPECT_EQ(read("123456789012").to_string(), "123456789012");
    EXPECT_EQ(numeral_pool::capacity(), numeral_pool::initial_capacity);
}

TEST(numeral_test, huge_values_do_not_keep_their_memory) {
    for (int i = 0; i < 50; i++) {
        numeral a = numeral(3).expt(100000 + i);
        EXPECT_GT(a.num_bits(), 150000u);
    }
    numeral_pool::check_invariant();
}

// Static objects may hold bignums: they are destroyed at the end of the process, the pool never is.
TEST(numeral_death_test, static_bignums) {
    EXPECT_EXIT(
        {
            static numeral const power = numeral(2).expt(100);
            std::exit(power.to_string() == "1267650600228229401496703205376" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(numeral_test, division_by_zero_throws_in_every_form) {
    for (numeral const& zero : {numeral(0), numeral(limit + 1) - numeral(limit + 1)}) {
        for (numeral const& a : {numeral(0), numeral(1), numeral(-7), read("2/3"), read("100000000000/7")}) {
            numeral b(a);
            EXPECT_THROW(b /= zero, division_by_zero_exception);
            EXPECT_EQ(b, a);
            EXPECT_THROW(static_cast<void>(div(a, zero)), division_by_zero_exception);
            EXPECT_THROW(static_cast<void>(mod(a, zero)), division_by_zero_exception);
        }
        try {
            static_cast<void>(numeral(1) / zero);
        } catch (vexor_exception const& e) {
            EXPECT_STREQ(e.what(), "division by zero.");
        }
        numeral b(zero);
        EXPECT_THROW(b /= *&b, division_by_zero_exception);
    }
}

TEST(numeral_test, parsing_fractions) {
    EXPECT_EQ(read("3/6").to_string(), "1/2");
    EXPECT_TRUE(read("3/6").is_fixnum());
    EXPECT_EQ(read("-3/-6").to_string(), "1/2");
    EXPECT_EQ(read("3/-6").to_string(), "-1/2");
    EXPECT_EQ(read("0/7").to_string(), "0");
    EXPECT_EQ(read("-99999999999/-33333333333").to_string(), "3");
    EXPECT_EQ(read("99999999999/3").to_string(), "33333333333");
    EXPECT_EQ(read("3/99999999999").to_string(), "1/33333333333");
    EXPECT_EQ(numeral("10/3", 16).to_string(), "10/3"); // the base is that of integers only
    for (char const* text : {"1/", "1/0", "0/0", "/", "1/-0", "99999999999/0", "99999999999/", "1/x", "1/-"})
        EXPECT_THROW(read(text), division_by_zero_exception) << text;
    std::string digits(1000, '7');
    EXPECT_THROW(read((digits + "/").c_str()), division_by_zero_exception);
    EXPECT_EQ(read((digits + "/7").c_str()).to_string(), std::string(1000, '1'));
    EXPECT_EQ(read(("7/" + digits).c_str()).to_string(), "1/" + std::string(1000, '1'));
}

TEST(numeral_test, parsing_decimals) {
    EXPECT_EQ(read("0.50").to_string(), "1/2");
    EXPECT_EQ(read("1.").to_string(), "1");
    EXPECT_EQ(read(".5").to_string(), "1/2");
    EXPECT_EQ(read("-0.25").to_string(), "-1/4");
    EXPECT_EQ(read("-.5").to_string(), "-1/2");
    EXPECT_EQ(read(".").to_string(), "0");
    EXPECT_EQ(read("3.14159265358979323846").to_string(), "157079632679489661923/50000000000000000000");
    EXPECT_EQ(read("99999999999.5").to_string(), "199999999999/2");
    EXPECT_EQ(numeral("1.5", 2).to_string(), "3/2");
    std::string longest = std::string(997, '0') + ".5";
    EXPECT_EQ(read(longest.c_str()).to_string(), "1/2");
    longest.insert(0, "1");
    EXPECT_THROW(read(longest.c_str()), arithmetic_overflow_exception);
    EXPECT_THROW(read((std::string(100000, '1') + ".").c_str()), arithmetic_overflow_exception);
    try {
        read(longest.c_str());
    } catch (vexor_exception const& e) {
        EXPECT_STREQ(e.what(), "arithmetic overflow.");
    }
    std::string fraction = "0." + std::string(997, '3');
    EXPECT_EQ(read(fraction.c_str()) * numeral(10).expt(997), read(std::string(997, '3').c_str()));
}

TEST(numeral_test, parsing_integers) {
    EXPECT_EQ(numeral("101", 2), numeral(5));
    EXPECT_EQ(numeral("ff", 16), numeral(255));
    EXPECT_EQ(numeral("FF", 16), numeral(255));
    EXPECT_EQ(numeral("0xFF", 16), numeral(255));
    EXPECT_EQ(numeral(std::string(100, '1').c_str(), 2), numeral(2).expt(100) - 1);
    EXPECT_EQ(numeral(std::string(25, 'f').c_str(), 16), numeral(2).expt(100) - 1);
    EXPECT_TRUE(read("1073741813").is_fixnum());
    EXPECT_FALSE(read("1073741814").is_fixnum());
    EXPECT_TRUE(read("-1073741813").is_fixnum());
    EXPECT_FALSE(read("-1073741814").is_fixnum());
    EXPECT_EQ(read("00000000000000000000000000000012"), numeral(12));
    EXPECT_TRUE(read("00000000000000000000000000000012").is_fixnum());
    EXPECT_EQ(read(" +12"), numeral(12));
    std::string digits = "1" + std::string(5000, '0');
    EXPECT_EQ(read(digits.c_str()).to_string(), digits);
    EXPECT_EQ(read(("-" + digits).c_str()).to_string(), "-" + digits);
}

// Reading stops where the number does; the same for small and for large values.
TEST(numeral_test, parsing_other_text) {
    EXPECT_EQ(read(""), numeral(0));
    EXPECT_EQ(read("abc"), numeral(0));
    EXPECT_EQ(read("-"), numeral(0));
    EXPECT_EQ(read("12abc"), numeral(12));
    EXPECT_EQ(read("99999999999abc").to_string(), "99999999999");
    EXPECT_EQ(read("1/2/3").to_string(), "1/2");
    EXPECT_EQ(read("1.5.7").to_string(), "3/2");
    EXPECT_EQ(read("1x.5").to_string(), "1");
    EXPECT_EQ(read("--5"), numeral(0));
    EXPECT_EQ(numeral("0x", 16), numeral(0));
    EXPECT_EQ(numeral("12", 2), numeral(1));
    EXPECT_EQ(read("\xff\xfe"), numeral(0));
}

TEST(numeral_test, rounding) {
    numeral half = numeral(1) / 2;
    EXPECT_EQ(floor(-half), numeral(-1));
    EXPECT_EQ(ceil(-half), numeral(0));
    EXPECT_EQ(floor(half), numeral(0));
    EXPECT_EQ(ceil(half), numeral(1));
    EXPECT_EQ(floor(numeral(7)), numeral(7));
    EXPECT_EQ(ceil(numeral(-7)), numeral(-7));
    EXPECT_EQ(div(-7, 2), numeral(-3));
    EXPECT_EQ(floor(numeral(-7) / 2), numeral(-4));
    EXPECT_EQ(fractional_part(-half), half);
    EXPECT_EQ(fractional_part(numeral(5)), numeral(0));
    EXPECT_EQ(mod(-7, 2), numeral(1));
    EXPECT_EQ(mod(-7, -2), numeral(1));
}

TEST(numeral_test, gcd_and_lcm) {
    EXPECT_EQ(gcd(numeral(0), numeral(0)), numeral(0));
    EXPECT_EQ(gcd(numeral(0), numeral(-5)), numeral(5));
    EXPECT_EQ(gcd(numeral(-5), numeral(0)), numeral(5));
    EXPECT_EQ(gcd(numeral(-12), numeral(18)), numeral(6));
    EXPECT_EQ(lcm(numeral(4), numeral(6)), numeral(12));
    EXPECT_EQ(lcm(numeral(-4), numeral(6)), numeral(-12)); // the sign is that of the product
    EXPECT_EQ(lcm(numeral(0), numeral(6)), numeral(0));
    EXPECT_EQ(lcm(numeral(0), numeral(0)), numeral(0));
    EXPECT_EQ(gcd(big(12), numeral(18)), numeral(6));
    EXPECT_EQ(gcd(numeral(18), big(-12)), numeral(6));
    EXPECT_EQ(gcd(big(0), big(-12)), numeral(12));
    EXPECT_EQ(gcd(0u, 5u), 5u);
    EXPECT_EQ(gcd(5u, 0u), 5u);
    EXPECT_EQ(gcd(48u, 36u), 12u);
    EXPECT_EQ(ll_gcd(1ull << 63, 1ull << 40), 1ull << 40);
    EXPECT_EQ(ll_gcd(ULLONG_MAX, ULLONG_MAX), ULLONG_MAX);
}

TEST(numeral_test, powers) {
    EXPECT_EQ(numeral(0).expt(0), numeral(1));
    EXPECT_EQ(numeral(5).expt(0), numeral(1));
    EXPECT_EQ(numeral(5).expt(-3), numeral(1));
    EXPECT_EQ(numeral(0).expt(3), numeral(0));
    EXPECT_EQ(numeral(-2).expt(3), numeral(-8));
    EXPECT_EQ((numeral(2) / 3).expt(3).to_string(), "8/27");
    for (int n = 0; n < 70; n++) {
        numeral expected(1);
        for (int i = 0; i < n; i++) expected *= 3;
        EXPECT_EQ(numeral(3).expt(n), expected);
        EXPECT_EQ(numeral(3).expt(n).is_fixnum(), expected.is_fixnum());
    }
}

TEST(numeral_test, reduction_of_words) {
    auto reduced = [](long long n, long long d) {
        normalize_ll_posden(n, d);
        return std::to_string(n) + "/" + std::to_string(d);
    };
    EXPECT_EQ(reduced(0, 17), "0/1");
    EXPECT_EQ(reduced(-6, 4), "-3/2");
    EXPECT_EQ(reduced(6, 3), "2/1");
    EXPECT_EQ(reduced(LLONG_MIN, 1ll << 62), "-2/1");
    EXPECT_EQ(reduced(LLONG_MAX, LLONG_MAX), "1/1");
    EXPECT_EQ(reduced(LLONG_MIN, LLONG_MAX), std::to_string(LLONG_MIN) + "/" + std::to_string(LLONG_MAX));
}

TEST(numeral_test, bits_of_fixnums_stay_fixnums) {
    numeral a(limit);
    a |= 15;
    EXPECT_EQ(a, numeral(limit | 15));
    EXPECT_TRUE(a.is_fixnum());
    a.check_invariant();
    // Above the limit: sums and products are still exact.
    EXPECT_EQ((a + a).to_string(), "2147483646");
    EXPECT_EQ((a * a).to_string(), "1152921502459363329");
    numeral b(-limit);
    b &= -1024;
    EXPECT_EQ(b, numeral(-(1 << 30)));
    b.check_invariant();
    EXPECT_EQ((b + b).to_string(), "-2147483648");
    EXPECT_EQ((-b).to_string(), "1073741824"); // the one fixnum whose negation is none
    EXPECT_EQ(abs(b).to_string(), "1073741824");
    EXPECT_EQ((b - 1 - b), numeral(-1));
    EXPECT_EQ((numeral(0) - b).to_string(), "1073741824");
    EXPECT_EQ(gcd(b, b).to_string(), "1073741824");
    EXPECT_EQ((b / b), numeral(1));
    EXPECT_EQ((b / -1).to_string(), "1073741824");
    numeral c(5);
    c.bitwise_complement(30);
    EXPECT_EQ(c, numeral((1 << 30) - 6));
    EXPECT_TRUE(c.is_fixnum());
    c.bitwise_complement(30);
    EXPECT_EQ(c, numeral(5));
    c.bitwise_complement(31);
    EXPECT_EQ(c.to_string(), "2147483642");
    c.bitwise_complement(31);
    EXPECT_EQ(c, numeral(5));
    c.bitwise_complement(0);
    EXPECT_EQ(c, numeral(5));
}

TEST(numeral_test, hashes_agree_between_the_forms) {
    for (int v : {0, 1, -1, 5, -5, limit, -limit}) EXPECT_EQ(numeral(v).hash(), big(v).hash()) << v;
    EXPECT_NE(numeral(5).hash(), numeral(-5).hash());
    EXPECT_NE(read("100000000000").hash(), read("-100000000000").hash());
    EXPECT_EQ((numeral(2) / 3).hash(), big(numeral(2) / 3).hash());
    EXPECT_EQ(hash_numeral()(numeral(-1)), std::size_t{~0u});
}

TEST(numeral_test, conversions) {
    EXPECT_TRUE(numeral(INT_MIN).fits_int());
    EXPECT_EQ(numeral(INT_MIN).get_int(), INT_MIN);
    EXPECT_FALSE((numeral(INT_MAX) + 1).fits_int());
    EXPECT_TRUE(numeral(UINT_MAX).fits_unsigned());
    EXPECT_EQ(numeral(UINT_MAX).get_unsigned(), UINT_MAX);
    EXPECT_FALSE(numeral(-1).fits_unsigned());
    EXPECT_TRUE(numeral(LONG_MIN).fits_long());
    EXPECT_EQ(numeral(LONG_MIN).get_long(), LONG_MIN);
    EXPECT_FALSE((numeral(LONG_MIN) - 1).fits_long());
    EXPECT_FALSE((numeral(1) / 2).fits_long());
    EXPECT_FALSE(big(numeral(1) / 2).fits_long());
    EXPECT_EQ(big(7).get_long(), 7);
    EXPECT_DOUBLE_EQ((numeral(-1) / 4).get_double(), -0.25);
    EXPECT_DOUBLE_EQ(big(numeral(-1) / 4).get_double(), -0.25);
    EXPECT_EQ(read("-6/4").numerator(), numeral(-3));
    EXPECT_EQ(read("-6/4").denominator(), numeral(2));
    EXPECT_EQ(read("100000000000/7").numerator().to_string(), "100000000000");
    EXPECT_EQ(read("100000000000/7").denominator(), numeral(7));
    std::ostringstream out;
    out << read("-1/3");
    EXPECT_EQ(out.str(), "-1/3");
}

TEST(numeral_test, from_gmp) {
    mpq_t q;
    mpq_init(q);
    mpz_set_si(mpq_numref(q), 6);
    mpz_set_si(mpq_denref(q), -4);
    EXPECT_EQ(numeral(q).to_string(), "-3/2");
    EXPECT_TRUE(numeral(q).is_fixnum());
    mpz_set_ui(mpq_denref(q), 0);
    EXPECT_THROW(static_cast<void>(numeral(q)), division_by_zero_exception);
    mpz_ui_pow_ui(mpq_numref(q), 10, 30);
    EXPECT_EQ(numeral(mpq_numref(q)).to_string(), "1" + std::string(30, '0'));
    mpz_set_ui(mpq_denref(q), 7);
    EXPECT_EQ(numeral(q).to_string(), "1" + std::string(30, '0') + "/7");
    mpz_set_si(mpq_numref(q), -1);
    EXPECT_EQ(numeral(mpq_numref(q)), numeral(-1));
    mpq_set_ui(q, 1, 1);
    mpq_clear(q);
}

} // namespace
} // namespace vexor
