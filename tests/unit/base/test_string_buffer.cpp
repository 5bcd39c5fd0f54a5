#include "base/string_buffer.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cstdio>
#include <string>

#include "base/numeral.h"
#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

TEST(string_buffer_test, capacity_doubles) {
    string_buffer b;
    EXPECT_EQ(b.capacity(), 64u);
    for (int i = 0; i < 64; i++) b.append('x');
    EXPECT_EQ(b.capacity(), 64u);
    EXPECT_EQ(std::string(b.c_str()), std::string(64, 'x'));
    EXPECT_EQ(b.capacity(), 128u);
    EXPECT_EQ(b.size(), 64u);
    b.reset();
    EXPECT_STREQ(b.c_str(), "");
    EXPECT_EQ(b.capacity(), 128u);
}

TEST(string_buffer_test, a_buffer_without_capacity_grows) {
    string_buffer a(0);
    a.append('x');
    a.append("yz");
    EXPECT_STREQ(a.c_str(), "xyz");
    string_buffer b(0);
    EXPECT_STREQ(b.c_str(), "");
    string_buffer c(0);
    c.append("");
    c.append("text");
    EXPECT_STREQ(c.c_str(), "text");
}

TEST(string_buffer_test, formats) {
    string_buffer b;
    b << 'c' << "text" << true << false << 1.5f << 2.0 << -7l << INT_MIN << 3u << 4000000000u
      << ustring("name");
    EXPECT_STREQ(b.c_str(), "ctexttruefalse1.5000002.000000-7-21474836483-294967296name");
    b.reset();
    b << LONG_MIN << " " << ULONG_MAX << " " << numeral("22/7", 10);
    EXPECT_STREQ(b.c_str(), "-9223372036854775808 18446744073709551615 22/7");
    b.reset();
    b << position_tracker::position();
    EXPECT_STREQ(b.c_str(), "[(null), line(-1), column(-1), position(-1)]:");
}

TEST(string_buffer_test, the_largest_double_fits) {
    string_buffer b;
    b << -DBL_MAX;
    char expected[400];
    std::snprintf(expected, sizeof(expected), "%f", -DBL_MAX);
    EXPECT_STREQ(b.c_str(), expected);
}

TEST(string_buffer_test, agrees_with_a_string_under_random_appends) {
    random_stream random(vexor_test::first_seed(61));
    for (unsigned round = 0; round < vexor_test::rounds(50); round++) {
        string_buffer b(random.below(5));
        std::string model;
        for (int step = 0; step < 100; step++) {
            std::string text(random.below(random.chance(5) ? 2000 : 10),
                             static_cast<char>('a' + random.below(26)));
            if (random.chance(50)) {
                b.append(text.c_str());
                model += text;
            } else {
                b.append('-');
                model += '-';
            }
            if (random.chance(20)) {
                ASSERT_EQ(b.c_str(), model);
            }
        }
        ASSERT_EQ(b.c_str(), model);
    }
}

} // namespace
} // namespace vexor
