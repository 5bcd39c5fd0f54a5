#include "base/ustring.h"

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <sstream>
#include <string>

#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

// Made before main, whatever the order of initialisation.
ustring const static_name("made before main");

TEST(ustring_test, equal_texts_are_one_pointer) {
    EXPECT_EQ(ustring(), ustring(""));
    EXPECT_EQ(ustring("abc"), ustring(std::string("abc").c_str()));
    EXPECT_FALSE(ustring("abc") == ustring("abd"));
    EXPECT_EQ(ustring(static_cast<char const*>(nullptr)), ustring());
    EXPECT_EQ(static_name, ustring("made before main"));
    EXPECT_EQ(hash_ustring()(ustring("q")), reinterpret_cast<std::size_t>(ustring("q").c_str()));
}

TEST(ustring_test, numbers_and_characters) {
    EXPECT_EQ(ustring(17), ustring("17"));
    EXPECT_EQ(ustring(INT_MIN), ustring("-2147483648"));
    EXPECT_EQ(ustring('x'), ustring("x"));
    EXPECT_EQ(ustring('\0'), ustring());
    EXPECT_EQ(ustring("abcdef", 3), ustring("abc"));
    EXPECT_EQ(ustring("ab\0cd", 5), ustring("ab"));
    EXPECT_EQ(ustring("ab", 0), ustring());
}

TEST(ustring_test, append_and_concatenation) {
    ustring s("ab");
    s.append(7);
    EXPECT_EQ(s, ustring("ab7"));
    EXPECT_EQ(s.c_str(), ustring("ab7").c_str());
    s.append(-1).append(ustring("z"));
    EXPECT_EQ(s, ustring("ab7-1z"));
    s.append(s);
    EXPECT_EQ(s, ustring("ab7-1zab7-1z"));
    EXPECT_EQ("x" + ustring("y"), ustring("xy"));
    std::string half(100000, 'h');
    ustring big(half.c_str());
    big.append(big).append(3);
    EXPECT_EQ(big.c_str(), half + half + "3");
    EXPECT_EQ(big.length(), 200001u);
}

TEST(ustring_test, index_and_substring) {
    EXPECT_EQ(ustring("a").index_of('b'), -1);
    EXPECT_EQ(ustring("").index_of('b'), -1);
    EXPECT_EQ(ustring("abcb").index_of('b'), 1);
    EXPECT_EQ(ustring("abc").index_of('\0'), -1);
    EXPECT_EQ(ustring("abcde").substr(1, 3), ustring("bcd"));
    EXPECT_EQ(ustring("abcde").substr(3, 100), ustring("de"));
    EXPECT_EQ(ustring("abcde").substr(5, 1), ustring());
    EXPECT_EQ(ustring("abcde").substr(9, 1), ustring());
}

TEST(ustring_test, order_is_that_of_the_bytes) {
    EXPECT_TRUE(ustring("a").less(ustring("b")));
    EXPECT_FALSE(ustring("b").less(ustring("a")));
    EXPECT_FALSE(ustring("a").less(ustring("a")));
    EXPECT_TRUE(ustring("Z").less("a"));
    EXPECT_TRUE("a" < ustring("\xff"));
    std::ostringstream out;
    out << ustring("text");
    EXPECT_EQ(out.str(), "text");
}

TEST(ustring_test, hash_of_the_text) {
    EXPECT_EQ(ustring_manager::hash_text("ab", 2), 97u * 5 + 98u);
    EXPECT_EQ(ustring_manager::hash_text("\xff", 1), ~0u); // bytes count as signed characters
    std::string text(1000, '\x80');
    unsigned expected = 0;
    for (int i = 0; i < 1000; i++) expected = expected * 5 - 128u;
    EXPECT_EQ(ustring_manager::hash_text(text.c_str(), 1000), expected);
}

TEST(ustring_test, random_texts_agree_with_a_map) {
    random_stream random(vexor_test::first_seed(51));
    std::map<std::string, char const*> seen;
    for (unsigned i = 0; i < vexor_test::rounds(20000); i++) {
        std::string text;
        for (unsigned n = random.below(random.chance(1) ? 10000 : 6); n > 0; n--)
            text.push_back(
                static_cast<char>(random.chance(90) ? 'a' + random.below(3) : 1 + random.below(255)));
        char const* interned = ustring(text.c_str()).c_str();
        ASSERT_EQ(interned, text);
        auto [place, fresh] = seen.emplace(text, interned);
        if (!fresh) {
            ASSERT_EQ(place->second, interned);
        }
    }
}

// Names that differ in digits only collide under the plain hash of the text.
TEST(ustring_test, numbered_names_do_not_collide) {
    for (int i = 0; i < 200000; i++) ASSERT_EQ(ustring(("v" + std::to_string(i)).c_str()).length() > 1, true);
}

TEST(ustring_manager_test, reset_forgets_everything) {
    static ustring_manager manager; // never destroyed, as the global one
    EXPECT_EQ(manager.size(), 0u);
    char const* empty = manager.unique_string("");
    EXPECT_EQ(empty, manager.empty_string());
    for (int i = 0; i < 5000; i++) manager.unique_string(std::to_string(i).c_str());
    EXPECT_EQ(manager.size(), 5001u);
    manager.reset_memory();
    EXPECT_EQ(manager.size(), 1u);
    EXPECT_STREQ(manager.empty_string(), "");
    EXPECT_EQ(manager.unique_string(""), manager.empty_string());
    char const* x = manager.unique_string("x");
    EXPECT_STREQ(x, "x");
    EXPECT_EQ(manager.unique_string("x"), x);
    EXPECT_EQ(manager.size(), 2u);
}

} // namespace
} // namespace vexor
