#include "base/numeral_ext.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vexor {
namespace {

TEST(numeral_ext_test, rounding) {
    EXPECT_EQ(floor(numeral_ext(5, -1)), numeral(4));
    EXPECT_EQ(ceil(numeral_ext(5, -1)), numeral(5));
    EXPECT_EQ(floor(numeral_ext(5, 1)), numeral(5));
    EXPECT_EQ(ceil(numeral_ext(5, 1)), numeral(6));
    numeral half = numeral(1) / 2;
    EXPECT_EQ(floor(numeral_ext(half, -1)), numeral(0));
    EXPECT_EQ(ceil(numeral_ext(half, 1)), numeral(1));
    // The real part may be an integer in the form of a bignum.
    numeral five = numeral(2).expt(100) + 5 - numeral(2).expt(100);
    EXPECT_EQ(floor(numeral_ext(five, -1)), numeral(4));
    EXPECT_TRUE(numeral_ext(five).is_int());
    EXPECT_FALSE(numeral_ext(five, 1).is_int());
}

TEST(numeral_ext_test, text) {
    std::ostringstream out;
    out << numeral_ext(5) << " " << numeral_ext(5, numeral(-1) / 2) << " " << numeral_ext::m_zero;
    EXPECT_EQ(out.str(), "5 (+ 5 (* -1/2 delta)) 0");
}

TEST(numeral_ext_test, scaling_by_an_own_component) {
    numeral_ext x(3, 5);
    x *= x.get_real();
    EXPECT_EQ(x, numeral_ext(9, 15));
    x /= x.get_real();
    EXPECT_EQ(x, numeral_ext(1, numeral(15) / 9));
    x += x;
    x -= *&x;
    EXPECT_TRUE(x.is_zero());
}

TEST(numeral_ext_test, delta_is_lowered_only_where_it_must_be) {
    numeral delta(1);
    update_delta(numeral_ext(0, 1), numeral_ext(5, 0), delta); // 0 + d <= 5 allows d = 5
    EXPECT_EQ(delta, numeral(1));
    update_delta(numeral_ext(0, 4), numeral_ext(1, 0), delta);
    EXPECT_EQ(delta, numeral(1) / 4);
    update_delta(numeral_ext(0, 0), numeral_ext(1, 3), delta);
    EXPECT_EQ(delta, numeral(1) / 4);
    update_delta(numeral_ext(2, 0), numeral_ext(2, 3), delta);
    EXPECT_EQ(delta, numeral(1) / 4);
}

} // namespace
} // namespace vexor
