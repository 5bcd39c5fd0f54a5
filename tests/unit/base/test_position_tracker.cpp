#include "base/position_tracker.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "support/random.h"

namespace vexor {
namespace {

using vexor_test::random_stream;

void expect_position(position_tracker::position const& p, int line, int column, char const* name, int pos) {
    EXPECT_EQ(p.m_line, line);
    EXPECT_EQ(p.m_column, column);
    EXPECT_STREQ(p.m_file_name, name);
    EXPECT_EQ(p.m_pos, pos);
}

TEST(position_tracker_test, the_invalid_position) {
    position_tracker t;
    expect_position(t.get_position(-1), -1, -1, nullptr, -1);
    expect_position(t.get_position(5), -1, -1, nullptr, -1);
    t.new_file("f");
    expect_position(t.get_position(-1), -1, -1, nullptr, -1);
    expect_position(t.get_position(INT_MIN), -1, -1, nullptr, -1);
    std::ostringstream out;
    out << t.get_position(-1);
    EXPECT_EQ(out.str(), "[(null), line(-1), column(-1), position(-1)]:");
}

TEST(position_tracker_test, lines_and_columns_of_one_file) {
    position_tracker t;
    t.new_file("f");
    EXPECT_TRUE(t.is_file_open());
    // "ab\ncd": positions 0 to 4, the line end at 2.
    t.new_line(2);
    expect_position(t.get_position(0), 1, 1, "f", 0);
    expect_position(t.get_position(1), 1, 2, "f", 1);
    expect_position(t.get_position(2), 1, 3, "f", 2);
    expect_position(t.get_position(3), 2, 1, "f", 3);
    expect_position(t.get_position(4), 2, 2, "f", 4);
    std::ostringstream out;
    dump_position(out, t.get_position(4));
    EXPECT_EQ(out.str(), "[f, line(2), column(2), position(4)]:");
    char const* name;
    int pos;
    int line;
    int column;
    t.get_curr_file_info(4, name, pos, line, column);
    EXPECT_STREQ(name, "f");
    EXPECT_EQ(pos, 4);
    EXPECT_EQ(line, 2);
    EXPECT_EQ(column, 2);
}

TEST(position_tracker_test, a_nested_file_and_the_way_back) {
    position_tracker t;
    t.new_file("outer");
    t.new_line(9);
    // The include stands at position 14, line 2, column 5.
    char const* name;
    int pos;
    int line;
    int column;
    t.get_curr_file_info(14, name, pos, line, column);
    t.close_file(14);
    EXPECT_FALSE(t.is_file_open());
    t.new_file("inner");
    EXPECT_EQ(t.get_file_initial_pos(), 15);
    t.new_line(17);
    t.close_file(20);
    EXPECT_EQ(t.get_closed_pos(), 20);
    t.continue_file(pos, column, line, name);
    t.new_line(25);
    expect_position(t.get_position(12), 2, 3, "outer", 12);
    expect_position(t.get_position(16), 1, 2, "inner", 1);
    expect_position(t.get_position(19), 2, 2, "inner", 4);
    expect_position(t.get_position(22), 2, 5 + 2, "outer", 14 + 1);
    expect_position(t.get_position(27), 3, 2, "outer", 14 + 6);
    t.check_invariant();
}

TEST(position_tracker_test, positions_outlive_the_tracker) {
    position_tracker::position p;
    {
        position_tracker t;
        for (int i = 0; i < 50; i++) {
            std::string name = "file" + std::to_string(i);
            t.new_file(name.c_str());
            if (i == 3) p = t.get_position(0);
        }
    }
    // All files start at the same position; the last one opened that is not above it answers.
    EXPECT_STREQ(p.m_file_name, "file3");
}

TEST(position_tracker_test, a_file_of_a_million_lines) {
    position_tracker t;
    t.new_file("big");
    for (int i = 0; i < 1000000; i++) t.new_line(3 * i + 2);
    for (int i : {0, 1, 499999, 999999})
        expect_position(t.get_position(3 * i + 1), i + 1, 2, "big", 3 * i + 1);
}

TEST(position_tracker_test, counts_at_the_end_of_int_do_not_overflow) {
    position_tracker t;
    t.new_line(5); // before any file
    t.new_file(nullptr);
    t.close_file(INT_MAX);
    t.continue_file(INT_MAX, INT_MAX, INT_MAX, "f");
    t.new_line(INT_MAX);
    auto p = t.get_position(INT_MAX);
    EXPECT_STREQ(p.m_file_name, "f");
    EXPECT_EQ(p.m_pos, INT_MAX);
    EXPECT_EQ(t.get_position(3).m_file_name, nullptr);
    EXPECT_EQ(t.get_position(3).m_line, 1);
    t.check_invariant();
}

// Against counting characters by hand, over random files that include each other.
TEST(position_tracker_test, agrees_with_counting) {
    std::uint64_t first = vexor_test::first_seed(71);
    for (std::uint64_t seed = first; seed < first + vexor_test::rounds(30); seed++) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        struct open_file {
            std::string m_name;
            int m_line = 1;
            int m_column = 0;  // characters read on the line
            int m_offset = -1; // of the last character read
        };
        struct expected {
            int m_line;
            int m_column;
            int m_offset;
            std::string m_name;
        };
        position_tracker t;
        std::vector<open_file> files;
        std::vector<expected> by_position;
        int names = 0;
        auto position = [&] { return static_cast<int>(by_position.size()) - 1; };
        auto open = [&] {
            files.push_back({"f" + std::to_string(names++)});
            t.new_file(files.back().m_name.c_str());
        };
        open();
        for (int step = 0; step < 500; step++) {
            open_file& f = files.back();
            if (random.chance(96)) {
                f.m_column++;
                f.m_offset++;
                by_position.push_back({f.m_line, f.m_column, f.m_offset, f.m_name});
                if (random.chance(15)) {
                    t.new_line(position());
                    f.m_line++;
                    f.m_column = 0;
                }
            } else if (f.m_column > 0 && random.chance(50)) {
                t.close_file(position());
                open();
            } else if (files.size() > 1) {
                t.close_file(position());
                files.pop_back();
                open_file const& g = files.back();
                t.continue_file(g.m_offset + 1, g.m_column, g.m_line, g.m_name.c_str());
            }
        }
        for (int i = 0; i <= position(); i++) {
            expected const& e = by_position[static_cast<unsigned>(i)];
            auto p = t.get_position(i);
            ASSERT_EQ(p.m_line, e.m_line) << i;
            ASSERT_EQ(p.m_column, e.m_column) << i;
            ASSERT_EQ(p.m_pos, e.m_offset) << i;
            ASSERT_EQ(p.m_file_name, e.m_name) << i;
        }
    }
}

TEST(position_tracker, old_spans_are_forgotten) {
    position_tracker tracker;
    int pos = 0;
    unsigned const n = 3 * position_tracker::max_spans;
    for (unsigned i = 0; i < n; ++i) {
        tracker.new_file(i % 2 == 0 ? "even" : "odd");
        pos = tracker.get_file_initial_pos();
        tracker.new_line(pos + 3);
        tracker.close_file(pos + 9);
    }
    tracker.check_invariant();
    EXPECT_EQ(tracker.get_position(5).m_line, -1);
    // Of those that are kept, nothing has changed.
    for (unsigned back = 0; back < position_tracker::max_spans / 2; back += 1000) {
        position_tracker::position const p = tracker.get_position(pos + 5 - static_cast<int>(10 * back));
        EXPECT_EQ(p.m_line, 2);
        EXPECT_EQ(p.m_column, 2);
        EXPECT_EQ(p.m_pos, 5);
        EXPECT_STREQ(p.m_file_name, back % 2 == 0 ? "odd" : "even");
    }
}

} // namespace
} // namespace vexor
