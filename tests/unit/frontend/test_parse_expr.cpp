#include <gtest/gtest.h>

#include "native_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

std::string const world =
    "(define x::int) (define y::int) (define p::bool) (define q::bool) (define r::real)"
    "(define f::(-> int int)) (define g::(-> int int int)) (define a::(bitvector 8))"
    "(define b::(bitvector 8)) (define t::(tuple int bool)) (define s::(record m::int n::bool))";

class parse_expr_test : public testing::Test, public native_text {
protected:
    void SetUp() override { ASSERT_EQ(read(world), ""); }
};

struct form {
    char const* text;
    char const* printed;
};

TEST_F(parse_expr_test, printed_forms) {
    // Where the printed form differs from the text, it was derived by hand from the rules of the language.
    form const forms[] = {
        {"x", "x"},
        {"12", "12"},
        {"-3/6", "-1/2"},
        {"true", "true"},
        {"false", "false"},
        {"0b0101", "0b0101"},
        {"1b1", "0b1"},
        {"(mk-bv 4 5)", "0b0101"},
        {"(mk-bv 4 21)", "0b0101"},
        {"(mk-bv 3 8)", "0b000"},
        {"(f x)", "(f x)"},
        {"(g x 1)", "(g x 1)"},
        {"(+ x y 1)", "(+ x y 1)"},
        {"(- x)", "(- x)"},
        {"(= x y)", "(= x y)"},
        {"(/= x y)", "(/= x y)"},
        {"(and p q)", "(and p q)"},
        {"(or p q)", "(or p q)"},
        {"(not p)", "(not p)"},
        {"(=> p q)", "(=> p q)"},
        {"(implies p q)", "(=> p q)"},
        {"(if p x y)", "(ite p x y)"},
        {"(ite p x y)", "(ite p x y)"},
        {"(* 2 x)", "(* 2 x)"},
        {"(/ r 2)", "(/ r 2)"},
        {"(< x y)", "(< x y)"},
        {"(<= x y)", "(<= x y)"},
        {"(> x y)", "(> x y)"},
        {"(>= x y)", "(>= x y)"},
        {"(bv-slt a b)", "(bv-slt a b)"},
        {"(sbv-lt a b)", "(bv-slt a b)"},
        {"(sbv-ge a b)", "(bv-sge a b)"},
        {"(bv-rotate_left a 2)", "(bv-rotate_left a 2)"},
        {"(int_pred r)", "(int_pred r)"},
        {"(lambda (x::int) (+ x 1))", "(lambda (x::int) (+ x 1))"},
        {"(forall (k::int h::(subrange 0 k)) (< h k))", "(forall (k::int h::(subrange 0 k)) (< h k))"},
        {"(exists (k::nat) (= k x))", "(exists (k::nat) (= k x))"},
        {"(let ((u 1) (v::int u)) (+ u v))", "(let ((u 1) (v::int u)) (+ u v))"},
        {"(let () x)", "(let () x)"},
        {"(update f (1) 3)", "(update f (1) 3)"},
        {"(update g (1 2) 3)", "(update g (1 2) 3)"},
        {"(update t 1 false)", "(update t 1 false)"},
        {"(update s m 3)", "(update s m 3)"},
        {"(select t 0)", "(select t 0)"},
        {"(select s n)", "(select s n)"},
        {"(mk-tuple 1)", "(mk-tuple 1)"},
        {"(mk-tuple 1 p)", "(mk-tuple 1 p)"},
        {"(mk-record n::p m::1)", "(mk-record m::1 n::p)"},
        {"((lambda (z::int) z) 1)", "((lambda (z::int) z) 1)"},
        {"((update f (1) 2) x)", "((update f (1) 2) x)"},
        {"((if p + -) x y)", "((ite p + -) x y)"},
        {"and", "and"},
        {"  ;comment\n(f;x\nx)", "(f x)"},
    };
    for (form const& each : forms) EXPECT_EQ(expr(each.text), each.printed) << each.text;
}

// Each reserved operator gives the name of its declaration.
TEST_F(parse_expr_test, every_operator) {
    struct {
        char const* word;
        char const* cls;
        char const* declared;
    } const operators[] = {{"=", "eq", "="},
                           {"/=", "diseq", "/="},
                           {"and", "and", "and"},
                           {"or", "or", "or"},
                           {"not", "not", "not"},
                           {"if", "ite", "ite"},
                           {"ite", "ite", "ite"},
                           {"=>", "implies", "implies"},
                           {"+", "add", "+"},
                           {"-", "sub", "-"},
                           {"*", "mul", "*"},
                           {"/", "div", "/"},
                           {"<", "lt", "<"},
                           {"<=", "le", "<="},
                           {">", "gt", ">"},
                           {">=", "ge", ">="},
                           {"bv-add", "bv_add", "bv-add"},
                           {"bv-sub", "bv_sub", "bv-sub"},
                           {"bv-mul", "bv_mul", "bv-mul"},
                           {"bv-neg", "bv_minus", "bv-neg"},
                           {"bv-concat", "bv_concat", "bv-concat"},
                           {"bv-extract", "bv_extract", "bv-extract"},
                           {"bv-and", "bv_and", "bv-and"},
                           {"bv-or", "bv_or", "bv-or"},
                           {"bv-not", "bv_not", "bv-not"},
                           {"bv-xor", "bv_xor", "bv-xor"},
                           {"bv-lt", "bv_lt", "bv-lt"},
                           {"bv-le", "bv_le", "bv-le"},
                           {"bv-gt", "bv_gt", "bv-gt"},
                           {"bv-ge", "bv_ge", "bv-ge"},
                           {"bv-slt", "sbv_lt", "sbv-lt"},
                           {"bv-sle", "sbv_le", "sbv-le"},
                           {"bv-sgt", "sbv_gt", "sbv-gt"},
                           {"bv-sge", "sbv_ge", "sbv-ge"},
                           {"bv-sign-extend", "bv_sign_extend", "bv-sign-extend"},
                           {"bv-shift-right0", "bv_shift_right0", "bv-shift-right0"},
                           {"bv-shift-right1", "bv_shift_right1", "bv-shift-right1"},
                           {"bv-shift-righta", "bv_shift_righta", "bv-shift-righta"},
                           {"bv-shift-left0", "bv_shift_left0", "bv-shift-left0"},
                           {"bv-shift-left1", "bv_shift_left1", "bv-shift-left1"},
                           {"real_pred", "real_pred", "real_pred"},
                           {"int_pred", "int_pred", "int_pred"},
                           {"bv-rotate_left", "bv_rotate_left", "bv-rotate_left"},
                           {"bv-rotate_right", "bv_rotate_right", "bv-rotate_right"},
                           {"bv-repeat", "bv_repeat", "bv-repeat"},
                           {"bv-udiv", "bv_udiv", "bv-udiv"},
                           {"bv-urem", "bv_urem", "bv-urem"},
                           {"bv-shl", "bv_shl", "bv-shl"},
                           {"bv-lshr", "bv_lshr", "bv-lshr"},
                           {"bv-nand", "bv_nand", "bv-nand"},
                           {"bv-nor", "bv_nor", "bv-nor"},
                           {"bv-xnor", "bv_xnor", "bv-xnor"},
                           {"bv-redor", "bv_redor", "bv-redor"},
                           {"bv-redand", "bv_redand", "bv-redand"},
                           {"bv-comp", "bv_comp", "bv-comp"},
                           {"bv-sdiv", "bv_sdiv", "bv-sdiv"},
                           {"bv-srem", "bv_srem", "bv-srem"},
                           {"bv-smod", "bv_smod", "bv-smod"},
                           {"bv-ashr", "bv_ashr", "bv-ashr"},
                           {"bv-zero-extend", "bv_zero_extend", "bv-zero-extend"}};
    for (auto const& op : operators) {
        shared_ptr<vexor::expr> e = read_expr_from_string(&m_manager, op.word);
        EXPECT_STREQ(e->get_cls_name(), op.cls) << op.word;
        EXPECT_STREQ(static_cast<name_expr*>(e.get())->get_name().c_str(), op.declared) << op.word;
    }
}

TEST_F(parse_expr_test, bv_extract_takes_its_ends_in_either_order) {
    EXPECT_EQ(expr("(bv-extract 5 2 a)"), "(bv-extract 5 2 a)");
    EXPECT_EQ(expr("(bv-extract 2 5 a)"), "(bv-extract 5 2 a)");
    shared_ptr<vexor::expr> low_first = read_expr_from_string(&m_manager, "(bv-extract 2 5 a)");
    EXPECT_EQ(text_of(low_first->get_type()), "(bitvector 4)");
    EXPECT_TRUE(low_first->equals(read_expr_from_string(&m_manager, "(bv-extract 5 2 a)").get()));
    // Ends that are no numbers of bits stay where they are.
    for (char const* text :
         {"(bv-extract -1 2 a)", "(bv-extract 1/2 2 a)", "(bv-extract x 2 a)", "(bv-extract 1 2)"})
        EXPECT_EQ(expr(text), text);
}

TEST_F(parse_expr_test, positions_of_nodes) {
    shared_ptr<vexor::expr> e = read_expr_from_string(&m_manager, "(and p\n  (< x 12))");
    auto* app = to_app(e.get());
    auto check = [&](vexor::ast* node, int line, int column, int pos) {
        position_tracker::position position = node->get_position();
        EXPECT_EQ(position.m_line, line);
        EXPECT_EQ(position.m_column, column);
        EXPECT_EQ(position.m_pos, pos);
        EXPECT_STREQ(position.m_file_name, "<string>");
    };
    check(app, 1, 1, 0);
    check(app->get_fun(), 1, 2, 1);
    check(app->get_arg(0), 1, 6, 5);
    auto* less = to_app(app->get_arg(1));
    check(less, 2, 3, 9);
    check(less->get_fun(), 2, 4, 10);
    check(less->get_arg(1), 2, 8, 14);
}

TEST_F(parse_expr_test, messages) {
    struct {
        char const* text;
        int pos;
        std::string message;
    } const faults[] = {
        {"", 0, "Expression expected."},
        {")", 0, "Expression expected."},
        {" ::", 1, "Expression expected."},
        {"\"a\"", 0, "Expression expected."},
        {"int", 0, "Expression expected."},
        {"define", 0, "Expression expected."},
        {"mapping", 0, "Expression expected."},
        {"(mapping x)", 1, "Expression expected."},
        {"()", 1, "Expression expected."},
        {"(f", 2, "Expression expected."},
        {"(f x", 4, "Expression expected."},
        {"(f ::)", 3, "Expression expected."},
        {"(f)", 0, "Invalid application, there are no arguments."},
        {" ((f))", 2, "Invalid application, there are no arguments."},
        {"(and z p)", 5, "Undefined name \"z\"."},
        {"(z)", 1, "Undefined name \"z\"."},
        {"(lambda (x::int))", 16, "Expression expected."},
        {"(lambda () x)", 0, "Invalid binding expression, there are no declarations."},
        {"(forall () p)", 0, "Invalid binding expression, there are no declarations."},
        {"(exists () p)", 0, "Invalid binding expression, there are no declarations."},
        {"(lambda x x)", 8, unexpected("identifier", "(")},
        {"(lambda (x) x)", 10, unexpected(")", "::")},
        {"(lambda (1::int) x)", 9, unexpected("numeral", "identifier")},
        {"(lambda (x::) x)", 12, "Type expected."},
        {"(lambda (x::int) x x)", 19, unexpected("identifier", ")")},
        {"(lambda (not::int) x)", 9, unexpected("not", "identifier")},
        {"(forall (x::int) p", 18, unexpected("(end-of-stream)", ")")},
        {"(let x x)", 5, unexpected("identifier", "(")},
        {"(let (x 1) x)", 6, unexpected("identifier", "(")},
        {"(let ((1 1)) x)", 7, unexpected("numeral", "identifier")},
        {"(let ((u)) x)", 8, "Expression expected."},
        {"(let ((u 1 2)) x)", 11, unexpected("numeral", ")")},
        {"(let ((u::int)) x)", 13, "Expression expected."},
        {"(let ((u 1)))", 12, "Expression expected."},
        {"(let ((u 1)) u u)", 15, unexpected("identifier", ")")},
        {"(let ((u v) (v 1)) u)", 9, "Undefined name \"v\"."},
        {"(and (let ((u 1)) u) u)", 21, "Undefined name \"u\"."},
        {"(update)", 7, "Expression expected."},
        {"(update f)", 9, "Invalid update expression."},
        {"(update f \"a\" 1)", 10, "Invalid update expression."},
        {"(update f x::1 2)", 11, "Expression expected."},
        {"(update t -1 2)", 10, "Invalid update expression."},
        {"(update t 1/2 2)", 10, "Invalid update expression."},
        {"(update t 2147483648 2)", 10, "Invalid update expression."},
        {"(update t 99999999999999999999 2)", 10, "Invalid update expression."},
        {"(update f () 1)", 10, "Invalid function update, the position to be updated was not specified."},
        {"(update f (1))", 13, "Expression expected."},
        {"(update f (1) 2 3)", 16, unexpected("numeral", ")")},
        {"(update t 1)", 11, "Expression expected."},
        {"(update t 1 2 3)", 14, unexpected("numeral", ")")},
        {"(select t)", 9, "Invalid select expression."},
        {"(select t true)", 10, "Invalid select expression."},
        {"(select t (0))", 10, "Invalid select expression."},
        {"(select t -1)", 10, "Invalid select expression."},
        {"(select t 1/2)", 10, "Invalid select expression."},
        {"(select t 4/2)", 10, "Invalid select expression."},
        {"(select t 2147483648)", 10, "Invalid select expression."},
        {"(select t 18446744073709551616)", 10, "Invalid select expression."},
        {"(select t 0 1)", 12, unexpected("numeral", ")")},
        {"(select)", 7, "Expression expected."},
        {"(mk-tuple)", 0,
         "Invalid empty tuple literal. A tuple literal must contain at least one component."},
        {"(mk-record)", 0, "Invalid empty record literal. A record literal must contain at least one entry."},
        {"(mk-record 1)", 11, unexpected("numeral", "identifier")},
        {"(mk-record m 1)", 13, unexpected("numeral", "::")},
        {"(mk-record m::)", 14, "Expression expected."},
        {"(mk-record m::1 m::2)", 16, "Invalid record type, the field \"m\" was already defined."},
        {"(mk-bv)", 6, unexpected(")", "numeral")},
        {"(mk-bv x 1)", 7, unexpected("identifier", "numeral")},
        {"(mk-bv 4)", 8, unexpected(")", "numeral")},
        {"(mk-bv 4 1 1)", 11, unexpected("numeral", ")")},
        {"(mk-bv 0 1)", 7, "Invalid mk-bv."},
        {"(mk-bv -1 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 1/2 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 8/2 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 4294967297 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 16777217 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 99999999999999999999999 1)", 7, "Invalid mk-bv."},
        {"(mk-bv 4 -1)", 9, "Invalid mk-bv."},
        {"(mk-bv 4 1/2)", 9, "Invalid mk-bv."},
        {" 0b", 1, "Invalid mk-bv."},
        {"(bv-add 0b 0b1)", 8, "Invalid mk-bv."},
        {"1/0", 0, "Invalid token."},
        {"(+ 1 1/)", 5, "Invalid token."},
        {"(f x:y)", 5, "Invalid token."},
        {"(f \"a)", 3, "Unfinished string."},
        {"(f \"\\256\")", 4, "Escape sequence is too large."},
    };
    for (auto const& each : faults) EXPECT_EQ(expr(each.text), at(each.pos, each.message)) << each.text;
}

TEST_F(parse_expr_test, limits_of_bit_vectors) {
    EXPECT_EQ(expr("(mk-bv 16777216 1)").size(), 2u + 16777216u);
    EXPECT_EQ(expr("0b" + std::string(16777217, '0')), at(0, "Invalid mk-bv."));
    // The value is reduced when it is read, whatever its length: 10000 is a multiple of 16, and 7777 is 1
    // modulo 16.
    EXPECT_EQ(expr("(mk-bv 4 " + std::string(1000, '7') + ")"), "0b0001");
}

TEST_F(parse_expr_test, scopes_of_let) {
    shared_ptr<vexor::expr> e = read_expr_from_string(&m_manager, "(let ((x 1) (y x)) (+ x y))");
    auto* let = static_cast<let_expr*>(e.get());
    ASSERT_EQ(let->num_bindings(), 2u);
    EXPECT_EQ(let->get_binding(0)->get_type(), nullptr);
    auto decl_of = [](vexor::expr* name) { return static_cast<name_expr*>(name)->get_decl(); };
    EXPECT_EQ(decl_of(let->get_binding(1)->get_definition()), let->get_binding(0));
    EXPECT_EQ(decl_of(to_app(let->get_expr())->get_arg(0)), let->get_binding(0));
    EXPECT_EQ(decl_of(to_app(let->get_expr())->get_arg(1)), let->get_binding(1));
    // A variable is not in scope in its own definition, and of two with one name the later one counts.
    e = read_expr_from_string(&m_manager, "(let ((x x) (x (+ x 1))) x)");
    let = static_cast<let_expr*>(e.get());
    EXPECT_FALSE(decl_of(let->get_binding(0)->get_definition())->is_local());
    EXPECT_EQ(decl_of(to_app(let->get_binding(1)->get_definition())->get_arg(0)), let->get_binding(0));
    EXPECT_EQ(decl_of(let->get_expr()), let->get_binding(1));
}

TEST_F(parse_expr_test, inner_names_hide_outer_ones) {
    shared_ptr<vexor::expr> e =
        read_expr_from_string(&m_manager, "(lambda (k::int) (and (forall (k::bool) k) (= k 1)))");
    auto* outer = static_cast<lambda_expr*>(e.get());
    auto* conjunction = to_app(outer->get_expr());
    auto* inner = static_cast<forall_expr*>(conjunction->get_arg(0));
    EXPECT_EQ(static_cast<name_expr*>(inner->get_expr())->get_decl(), inner->get_binding(0));
    EXPECT_EQ(static_cast<name_expr*>(to_app(conjunction->get_arg(1))->get_arg(0))->get_decl(),
              outer->get_binding(0));
}

TEST_F(parse_expr_test, only_one_expression_is_read) {
    std::istringstream stream("x (f y) rest");
    EXPECT_EQ(text_of(read_expr(&m_manager, stream, "f").get()), "x");
    EXPECT_EQ(text_of(read_expr(&m_manager, stream, "f").get()), "(f y)");
    std::string rest;
    std::getline(stream, rest);
    EXPECT_EQ(rest, " rest");
}

TEST_F(parse_expr_test, files) {
    EXPECT_THROW(read_expr_from_file(&m_manager, "/no/such/file"), expr_expected_exception);
    EXPECT_THROW(read_type_from_file(&m_manager, "/no/such/file"), type_expected_exception);
    try {
        read_expr_from_string(&m_manager, "(f z)");
        FAIL();
    } catch (undefined_name_exception const& e) {
        EXPECT_STREQ(e.what(), "[<string>, line(1), column(4), position(3)]: Undefined name \"z\".");
    }
}

TEST_F(parse_expr_test, more_children_than_16_bits_count) {
    constexpr unsigned n = 70000;
    std::string args;
    for (unsigned i = 0; i < n; i++) args += " x";
    shared_ptr<vexor::expr> sum = read_expr_from_string(&m_manager, ("(+" + args + ")").c_str());
    EXPECT_EQ(to_app(sum.get())->num_args(), n);
    shared_ptr<vexor::expr> tuple = read_expr_from_string(&m_manager, ("(mk-tuple" + args + ")").c_str());
    EXPECT_EQ(static_cast<tuple_literal*>(tuple.get())->size(), n);
    shared_ptr<vexor::expr> selection = read_expr_from_string(&m_manager, "(select t 69999)");
    EXPECT_EQ(static_cast<tuple_selection*>(selection.get())->get_idx(), 69999u);
}

// A message belongs to its exception.
TEST_F(parse_expr_test, messages_do_not_overwrite_each_other) {
    try {
        read_expr_from_string(&m_manager, "(f z1)");
        FAIL();
    } catch (vexor_exception const& first) {
        std::string before = first.what();
        char const* pointer = first.what();
        try {
            read_expr_from_string(&m_manager, "(lambda x x)");
            FAIL();
        } catch (vexor_exception const& second) {
            EXPECT_STRNE(second.what(), pointer);
        }
        EXPECT_EQ(before, pointer);
    }
}

} // namespace
