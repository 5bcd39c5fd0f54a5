#include "simplify/call_results.h"

#include "ast/visit/for_each_visitor.h"
#include "base/deep_stack.h"
#include "simplify/same_term.h"

namespace vexor {

namespace {

class auxiliary_finder : public for_each_visitor {
public:
    bool m_found = false;

    void accept(ast* a) override {
        check_depth();
        for_each_visitor::accept(a);
    }
    using for_each_visitor::visit;
    void visit(const_decl*) override {}
    void visit(fresh_vars_expr*) override { m_found = true; }
    void visit(local_context_expr*) override { m_found = true; }
};

} // namespace

std::size_t call_results::call_hash::operator()(call const& c) const {
    std::size_t h = reinterpret_cast<std::size_t>(c.m_table->m_kept[c.m_first]);
    for (unsigned i = 1; i <= c.m_num_args; ++i) h = h * 31 + term_hash(c.m_table->m_kept[c.m_first + i]);
    return h;
}

bool call_results::call_equality::operator()(call const& a, call const& b) const {
    shared_ptr_vector<expr> const& kept = a.m_table->m_kept;
    if (kept[a.m_first] != kept[b.m_first] || a.m_num_args != b.m_num_args) return false;
    for (unsigned i = 1; i <= a.m_num_args; ++i)
        if (!same_term(kept[a.m_first + i], kept[b.m_first + i])) return false;
    return true;
}

call_results::call call_results::push(lambda_expr* fun, expr* const* args, unsigned n) {
    call c{this, m_kept.size(), n};
    m_kept.push_back(fun);
    m_kept.append(n, args);
    return c;
}

expr* call_results::find(lambda_expr* fun, expr* const* args, unsigned n) {
    call c = push(fun, args, n);
    call const* known = m_calls.find(c);
    m_kept.shrink(c.m_first);
    return known == nullptr ? nullptr : m_kept[known->m_first + n + 1];
}

void call_results::insert(lambda_expr* fun, expr* const* args, unsigned n, expr* result) {
    call c = push(fun, args, n);
    m_kept.push_back(result);
    if (!m_calls.insert(c)) m_kept.shrink(c.m_first);
}

bool call_results::is_reusable(lambda_expr* fun) {
    if (bool const* known = m_reusable.find(fun)) return *known;
    auxiliary_finder finder;
    finder(fun);
    return m_reusable.insert(fun, !finder.m_found);
}

void call_results::reset() {
    m_calls.reset();
    m_reusable.reset();
    m_kept.reset();
}

} // namespace vexor
