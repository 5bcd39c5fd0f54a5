// What prints reads back: random terms and types, as text, give equal nodes.
#include <gtest/gtest.h>

#include "ast/print/pp_dag_visitor.h"
#include "ast/types/op_rules.h"
#include "ast/types/type_checker.h"
#include "ast/visit/map_visitor.h"
#include "frontend/read_term.h"
#include "support/random_terms.h"
#include "support/small_stack.h"

#include <sstream>

namespace vexor {
namespace {

using vexor_test::random_terms;
using vexor_test::to_text;

std::string displayed(ast const* n) {
    std::ostringstream out;
    out << *n;
    return out.str();
}

// The term as it prints: extractions with the high end first.
class extraction_order_visitor : public map_visitor {
public:
    extraction_order_visitor()
        : map_visitor(false) {}

    using map_visitor::visit;
    void visit(bv_extract_name_expr* fun, application* a) override {
        map_visitor::visit(static_cast<expr*>(fun), a);
        shared_ptr<ast> mapped = m_result;
        auto* n = static_cast<application*>(mapped.get());
        unsigned high = 0;
        unsigned low = 0;
        if (!get_extract_bounds(n, high, low)) return;
        ast_manager* m = n->get_manager();
        shared_ptr<expr> args[] = {mk<numeral_expr>(m, numeral(static_cast<int>(high)), -1),
                                   mk<numeral_expr>(m, numeral(static_cast<int>(low)), -1)};
        expr* all[] = {args[0], args[1], n->get_arg(2)};
        m_result = n->clone(all, 3).get();
    }
};

TEST(print_and_read, random_terms) {
    for (unsigned seed = 0; seed < vexor_test::rounds(300); ++seed) {
        SCOPED_TRACE(seed);
        ast_manager m;
        random_terms random(m, seed);
        expr* e = random.random_term(random.random_type(2), 5);
        extraction_order_visitor order;
        shared_ptr<expr> expected = order(e);
        for (std::string const& text : {to_text(e), displayed(e)}) {
            shared_ptr<expr> read = read_expr_from_string(&m, text.c_str());
            ASSERT_TRUE(read->equals(expected)) << text << "\n" << to_text(read);
            ASSERT_EQ(to_text(read), to_text(e));
            ASSERT_NO_THROW(type_check(read)) << text;
            ASSERT_TRUE(read->get_type()->equals(e->get_type())) << text;
        }
        // Typing does not show.
        ASSERT_EQ(to_text(expected), to_text(e));
    }
}

TEST(print_and_read, random_types) {
    for (unsigned seed = 0; seed < vexor_test::rounds(500); ++seed) {
        SCOPED_TRACE(seed);
        ast_manager m;
        random_terms random(m, seed);
        type* t = random.random_type(4);
        shared_ptr<type> read = read_type_from_string(&m, displayed(t).c_str());
        ASSERT_TRUE(read->equals(t)) << displayed(t) << "\n" << displayed(read);
    }
}

TEST(print_and_read, deep_terms) {
    vexor_test::on_small_stack([] {
        ast_manager m;
        constexpr int depth = 100000;
        for (auto const& [open, middle, close] :
             std::initializer_list<std::tuple<char const*, char const*, char const*>>{
                 {"(not ", "true", ")"},
                 {"(+ 1 ", "1", ")"},
                 {"(+ ", "1", " 1)"},
                 {"(let ((x 1)) ", "x", ")"},
                 {"(let ((x ", "1", ")) x)"},
                 {"(mk-tuple ", "1", ")"}}) {
            std::string text;
            for (int i = 0; i < depth; ++i) text += open;
            text += middle;
            for (int i = 0; i < depth; ++i) text += close;
            shared_ptr<expr> e = read_expr_from_string(&m, text.c_str());
            EXPECT_NO_THROW(type_check(e)) << open;
            EXPECT_EQ(to_text(e), text) << open;
        }
        for (auto const& [open, close] : std::initializer_list<std::pair<char const*, char const*>>{
                 {"(-> int ", ")"}, {"(tuple ", ")"}}) {
            std::string text;
            for (int i = 0; i < depth; ++i) text += open;
            text += "bool";
            for (int i = 0; i < depth; ++i) text += close;
            shared_ptr<type> t = read_type_from_string(&m, text.c_str());
            EXPECT_EQ(to_text(t), text) << open;
            EXPECT_NO_THROW(type_check(t)) << open;
        }
    });
}

} // namespace
} // namespace vexor
