#include <gtest/gtest.h>

#include "native_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

class parse_type_test : public testing::Test, public native_text {
protected:
    void SetUp() override { ASSERT_EQ(read("(define-type u) (define-type w int) (define x::int)"), ""); }
};

TEST_F(parse_type_test, printed_forms) {
    struct {
        char const* text;
        char const* printed;
    } const forms[] = {
        {"bool", "bool"},
        {"number", "number"},
        {"real", "real"},
        {"int", "int"},
        {"nat", "nat"},
        {"u", "u"},
        {"w", "w"},
        {"(-> int bool)", "(-> int bool)"},
        {"(-> u w int bool)", "(-> u w int bool)"},
        {"(-> a::int (subrange 0 a))", "(-> a::int (subrange 0 a))"},
        {"(-> (-> int int) int)", "(-> (-> int int) int)"},
        {"(-> a::int b::int)", "(-> a::int int)"},
        {"(tuple int)", "(tuple int)"},
        {"(tuple a::int b::(subrange 0 a) u)", "(tuple a::int b::(subrange 0 a) u)"},
        {"(tuple a :: int)", "(tuple a::int)"},
        {"(record b::int a::bool)", "(record a::bool b::int)"},
        {"(subtype (n::int) (> n x))", "(subtype (n::int) (> n x))"},
        {"(subrange 0 9)", "(subrange 0 9)"},
        {"(subrange x (+ x 1))", "(subrange x (+ x 1))"},
        {"(bitvector 1)", "(bitvector 1)"},
        {"(bitvector 16777216)", "(bitvector 16777216)"},
        {"(bitvector 0032)", "(bitvector 32)"},
    };
    for (auto const& each : forms) EXPECT_EQ(type(each.text), each.printed) << each.text;
}

TEST_F(parse_type_test, classes_of_builtin_names) {
    for (char const* name : {"bool", "number", "real", "int", "nat"}) {
        shared_ptr<vexor::type> t = read_type_from_string(&m_manager, name);
        EXPECT_EQ(std::string(t->get_cls_name()), std::string(name) + "_type_name");
        EXPECT_EQ(t->get_position().m_pos, 0);
    }
}

TEST_F(parse_type_test, messages) {
    std::string const too_few = "Invalid function type.";
    struct {
        char const* text;
        int pos;
        std::string message;
    } const faults[] = {
        {"", 0, "Type expected."},
        {"12", 0, "Type expected."},
        {"()", 1, "Type expected."},
        {"(", 1, "Type expected."},
        {"(int)", 1, "Type expected."},
        {"(u)", 1, "Type expected."},
        {"lambda", 0, "Type expected."},
        {"z", 0, "Undefined name \"z\"."},
        {"x", 0, "Undefined name \"x\"."},
        {"(tuple z)", 7, "Undefined name \"z\"."},
        {"(->)", 0, too_few},
        {"(-> int)", 0, too_few},
        {"(tuple (-> a::int))", 7, too_few},
        {"(-> int", 7, "Type expected."},
        {"(-> int 1)", 8, "Type expected."},
        {"(-> a:: )", 8, "Type expected."},
        {"(-> a::int", 10, "Type expected."},
        {"(-> int a", 8, "Undefined name \"a\"."},
        {"(tuple)", 0, "Invalid empty tuple type. A tuple must contain at least one component."},
        {"(record)", 0, "Invalid empty record type. A record must contain at least one field."},
        {"(record int)", 8, unexpected("int", "identifier")},
        {"(record a int)", 10, unexpected("int", "::")},
        {"(record a::int b::int a::bool)", 22, "Invalid record type, the field \"a\" was already defined."},
        {"(record a::int", 14, unexpected("(end-of-stream)", "identifier")},
        {"(subtype x true)", 9, unexpected("identifier", "(")},
        {"(subtype (n) true)", 11, unexpected(")", "::")},
        {"(subtype (n::int m::int) true)", 17, unexpected("identifier", ")")},
        {"(subtype (n::int))", 17, "Expression expected."},
        {"(subtype (n::int) true 1)", 23, unexpected("numeral", ")")},
        {"(subrange)", 9, "Expression expected."},
        {"(subrange 0)", 11, "Expression expected."},
        {"(subrange 0 1 2)", 14, unexpected("numeral", ")")},
        {"(bitvector)", 10, unexpected(")", "numeral")},
        {"(bitvector x)", 11, unexpected("identifier", "numeral")},
        {"(bitvector 8 8)", 13, unexpected("numeral", ")")},
        {"(bitvector 0)", 11, "invalid bitvector size."},
        {"(bitvector -8)", 11, "invalid bitvector size."},
        {"(bitvector 16/2)", 11, "invalid bitvector size."},
        {"(bitvector 16777217)", 11, "invalid bitvector size."},
        {"(bitvector 4294967297)", 11, "invalid bitvector size."},
        {"(bitvector 99999999999999999999999)", 11, "invalid bitvector size."},
        // Names for elements belong to a type with a name.
        {"(scalar a b)", 1, "Type expected."},
        {"(datatype a)", 1, "Type expected."},
    };
    for (auto const& each : faults) EXPECT_EQ(type(each.text), at(each.pos, each.message)) << each.text;
}

TEST_F(parse_type_test, a_definition_is_expected) {
    std::istringstream stream(" 12");
    m_manager.get_position_tracker().new_file("f");
    parser p(stream, &m_manager);
    p.next();
    try {
        p.parse_type(true);
        FAIL();
    } catch (type_expected_exception const& e) {
        EXPECT_STREQ(e.what_core(), "Type definition expected.");
        EXPECT_EQ(e.what(), at(1, "Type definition expected."));
    }
}

TEST_F(parse_type_test, names_end_with_their_type) {
    EXPECT_EQ(expr("(lambda (k::(tuple a::int (subrange 0 a))) a)"), at(43, "Undefined name \"a\"."));
    EXPECT_EQ(type("(-> (-> a::int (subrange 0 a)) (subrange 0 a))"), at(43, "Undefined name \"a\"."));
}

// Exceptions that a message of the parser exists for, though no text provokes them.
TEST(parser_exceptions, texts) {
    position_tracker::position none;
    std::string const nowhere = "[(null), line(-1), column(-1), position(-1)]: ";
    EXPECT_EQ(invalid_map_entry(none).what(), nowhere + "Invalid mapping entry.");
    EXPECT_EQ(nesting_too_deep_parser_exception(none).what(), nowhere + "Nesting is too deep.");
    EXPECT_EQ(unexpected_token_exception(none, token::kw_ite, token::double_colon).what(),
              nowhere + "Unexpected token 'ite'. '::' expected.");
}

} // namespace
