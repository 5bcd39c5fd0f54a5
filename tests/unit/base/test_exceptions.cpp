#include "base/deep_stack.h"
#include "base/exceptions.h"
#include "base/ustring.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace vexor;

namespace {

position_tracker::position somewhere() { return {3, 7, "f.ys", 41}; }

class sentence_exception : public specification_exception {
public:
    sentence_exception(position_tracker::position const& pos, std::string text)
        : specification_exception(pos)
        , m_text(std::move(text)) {}
    char const* what_core() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

TEST(exceptions, fixed_texts) {
    EXPECT_STREQ(vexor_exception().what(), "Unspecified vexor exception.");
    EXPECT_STREQ(vexor_debug_exception("broken").what(), "broken");
    EXPECT_STREQ(arithmetic_overflow_exception().what(), "arithmetic overflow.");
    EXPECT_STREQ(division_by_zero_exception().what(), "division by zero.");
    EXPECT_STREQ(non_difference_logic_exception().what(), "non difference logic constraint");
    EXPECT_STREQ(cnf_exception("no header").what(), "Invalid dimacs file: \"no header\".");
}

TEST(exceptions, not_implemented_with_and_without_place) {
    feature_not_implemented_exception plain("recursive functions");
    EXPECT_STREQ(plain.what(), "feature not supported: recursive functions.");
    feature_not_implemented_exception placed("recursive functions", somewhere());
    EXPECT_STREQ(placed.what(),
                 "[f.ys, line(3), column(7), position(41)]: feature not supported: recursive functions.");
    feature_not_implemented_exception term("non linear problem", {}, "(* x y)");
    EXPECT_STREQ(term.what(), "feature not supported: non linear problem (* x y).");
    EXPECT_EQ(term.get_text(), "non linear problem");
}

TEST(exceptions, specification_exception_prints_its_position) {
    specification_exception invalid{position_tracker::position{}};
    EXPECT_STREQ(invalid.what(),
                 "[(null), line(-1), column(-1), position(-1)]: Unspecified vexor exception.");
    sentence_exception placed(somewhere(), "Bad.");
    EXPECT_STREQ(placed.what(), "[f.ys, line(3), column(7), position(41)]: Bad.");
    EXPECT_STREQ(placed.what_core(), "Bad.");
}

TEST(exceptions, a_message_survives_the_next_one) {
    sentence_exception first(somewhere(), "First.");
    sentence_exception second(somewhere(), "Second.");
    char const* text = first.what();
    second.what();
    specification_exception{position_tracker::position{}}.what();
    EXPECT_STREQ(text, "[f.ys, line(3), column(7), position(41)]: First.");
}

TEST(exceptions, a_copy_keeps_its_text) {
    std::unique_ptr<sentence_exception> copy;
    {
        sentence_exception original(somewhere(), "Gone.");
        original.what();
        copy = std::make_unique<sentence_exception>(original);
    }
    EXPECT_STREQ(copy->what(), "[f.ys, line(3), column(7), position(41)]: Gone.");
}

TEST(exceptions, cross_the_deep_stack_with_their_text) {
    try {
        on_deep_stack([] { throw sentence_exception(somewhere(), std::string("From ") + "below."); });
        FAIL();
    } catch (specification_exception const& e) {
        EXPECT_STREQ(e.what(), "[f.ys, line(3), column(7), position(41)]: From below.");
    }
}

TEST(exceptions, every_one_is_a_vexor_exception) {
    EXPECT_THROW(throw sentence_exception(somewhere(), "x"), vexor_exception);
    EXPECT_THROW(throw cnf_exception("x"), vexor_exception);
    EXPECT_THROW(throw feature_not_implemented_exception("x"), std::exception);
}

} // namespace
