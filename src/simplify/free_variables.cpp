#include "simplify/free_variables.h"

#include "ast/visit/for_each_visitor.h"
#include "base/deep_stack.h"

namespace vexor {

namespace {

class local_names : public for_each_visitor {
public:
    ptr_vector<var_decl> m_named;

    void accept(ast* a) override {
        if (a == nullptr || (a->is_expr() && !a->has_free_vars())) return;
        check_depth();
        for_each_visitor::accept(a);
    }
    using for_each_visitor::visit;
    void visit(name_expr* n) override {
        if (n->get_decl()->is_local()) m_named.push_back(n->get_decl());
    }
    void visit(const_decl*) override {}
};

} // namespace

ptr_vector<var_decl> free_variables_of(expr* e) {
    local_names v;
    v(e);
    return v.m_named;
}

} // namespace vexor
