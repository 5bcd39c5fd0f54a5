// Random small terms that share subterms between binders and bind the same variables again.
#pragma once

#include "ast_fixture.h"
#include "support/random.h"

namespace vexor_test {

class random_terms {
public:
    random_terms(ast_test& t, random_stream& random)
        : m_test(t)
        , m_random(random) {
        for (int i = 0; i < 4; ++i) m_vars.push_back(t.var("v" + std::to_string(i)));
        // A variable whose type depends on another one.
        ast_test::e_ptr bound = t.name(m_vars[0].get());
        ast_test::e_ptr zero = t.num(0);
        m_vars.push_back(t.var("dep", mk<subrange>(zero, bound, -1).get()));
        for (auto const& v : m_vars) m_pool.push_back(t.name(v.get()));
        m_pool.push_back(t.num(1));
        m_pool.push_back(t.num(2));
    }

    // Builds n more terms out of those that are there; the last one is returned.
    expr* grow(unsigned n) {
        for (unsigned i = 0; i < n; ++i) m_pool.push_back(build());
        return m_pool.back().get();
    }
    expr* pick() { return m_pool[m_random.below(static_cast<unsigned>(m_pool.size()))].get(); }
    expr* pick_recent() {
        auto size = static_cast<unsigned>(m_pool.size());
        return m_pool[size - 1 - m_random.below(size < 4 ? size : 4)].get();
    }
    var_decl* pick_var() { return m_vars[m_random.below(static_cast<unsigned>(m_vars.size()))].get(); }
    std::vector<ast_test::e_ptr> const& get_pool() const { return m_pool; }
    std::vector<ast_test::v_ptr> const& get_vars() const { return m_vars; }

private:
    ast_test::e_ptr build() {
        expr* a = pick_recent();
        expr* b = pick();
        switch (m_random.below(8)) {
        case 0:
            return m_test.app<add_decl>({a, b});
        case 1:
            return m_test.app<and_decl>({a, b, a});
        case 2:
            return m_test.bind<lambda_expr>({pick_var()}, a);
        case 3:
            return m_test.bind<forall_expr>({pick_var(), pick_var()}, a);
        case 4:
            return m_test.let({m_test.let_var("l", b).get()}, a);
        case 5: {
            auto l = m_test.let_var("m", b);
            ast_test::e_ptr use = m_test.name(l.get());
            return m_test.let({l.get()}, m_test.app<add_decl>({use.get(), a}).get());
        }
        case 6: {
            expr* parts[2] = {a, b};
            return mk<tuple_literal>(&m_test.m, parts, 2U, -1);
        }
        default:
            return m_test.name(pick_var());
        }
    }

    ast_test& m_test;
    random_stream& m_random;
    std::vector<ast_test::v_ptr> m_vars;
    std::vector<ast_test::e_ptr> m_pool;
};

} // namespace vexor_test
