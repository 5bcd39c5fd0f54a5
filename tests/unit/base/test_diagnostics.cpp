#include "base/diagnostics.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace vexor;

namespace {

std::string boxed(int indent, int width, char const* text) {
    std::ostringstream out;
    display_boxed(out, indent, width, text);
    return out.str();
}

TEST(diagnostics, verbosity) {
    EXPECT_EQ(get_verbosity_level(), 0);
    set_verbosity_level(5);
    EXPECT_EQ(get_verbosity_level(), 5);
    set_verbosity_level(0);
}

TEST(diagnostics, memory) {
    EXPECT_GT(get_memory_used(), 100000U);
    EXPECT_EQ(get_memory_used("/no/such/file"), 0U);
    std::string name = testing::TempDir() + "statm";
    std::ofstream(name) << "3 2 1\n";
    EXPECT_EQ(get_memory_used(name.c_str()) % 3, 0U);
    EXPECT_GE(get_memory_used(name.c_str()), 3U * 4096);
}

TEST(diagnostics, cpu_time_grows) {
    EXPECT_TRUE(is_cpu_time_available());
    double start = get_cpu_time();
    unsigned volatile sink = 0;
    while (get_cpu_time() - start < 0.01) sink = sink + 1;
    EXPECT_GT(get_cpu_time(), start);
}

TEST(diagnostics, boxed_text) {
    EXPECT_EQ(boxed(0, 80, "a short text"), "a short text");
    EXPECT_EQ(boxed(2, 10, "one two three four"), "one two \n  three \n  four");
    EXPECT_EQ(boxed(0, 5, "ab cd ef"), "ab cd \nef");
    EXPECT_EQ(boxed(3, 6, "abcdefghij k"), "abcdefghij \n   k") << "a long word is printed whole";
    EXPECT_EQ(boxed(2, 80, "a\nb"), "a\n  b");
    EXPECT_EQ(boxed(0, 80, "a \t b"), "a \t b");
    EXPECT_EQ(boxed(0, 80, ""), "");
    EXPECT_EQ(boxed(4, 0, "a b"), "a \n    b");
}

TEST(diagnostics, debug_switches) {
    EXPECT_FALSE(debug_enabled("x"));
    debug_enable("x");
    EXPECT_TRUE(debug_enabled("x"));
    EXPECT_FALSE(debug_enabled("y"));
    debug_enable("x");
    debug_disable("x");
    EXPECT_FALSE(debug_enabled("x"));
    EXPECT_TRUE(g_display_all);
    EXPECT_FALSE(g_ignore_all);
    display_all_msgs(false);
    EXPECT_FALSE(g_display_all);
    display_all_msgs(true);
}

TEST(diagnostics, assertions_have_no_effect) {
    make_core_assert()
        .set_context("f", "file.cpp", 3, "a < b")
        .level(assert_level::warning)
        .msg("why")
        .store_var("a", "1");
    std::ostringstream out;
    assert_context context;
    context.set("f", "file.cpp", 3, "a < b");
    context.process();
    context.display(out);
    EXPECT_EQ(out.str(), "");
    core_assert a;
    EXPECT_EQ(a.level(assert_level::error).get_level(), assert_level::error);
}

} // namespace
