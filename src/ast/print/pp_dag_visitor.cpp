#include "ast/print/pp_dag_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

using pp::composite;
using pp::composite_doc;
using pp::doc;

void occ_visitor::accept(ast* a) {
    if (a != nullptr && a->get_ref_count() > 1) {
        if (unsigned* n = m_num_occs.find(a))
            ++*n;
        else
            m_num_occs.insert(a, 1);
    }
    for_each_visitor::accept(a);
}

void occ_visitor::reset() {
    for_each_visitor::reset();
    m_num_occs.reset();
}

unsigned occ_visitor::get_num_occs(ast* a) const {
    unsigned const* n = m_num_occs.find(a);
    return n == nullptr ? 1 : *n;
}

void occ_visitor::visit(let_decl* n) {
    accept(n->get_declared_type());
    accept(n->get_definition());
}

// What the declarations of a constructor hold besides the types of its fields is not printed.
void occ_visitor::visit(constructor_decl* n) {
    for (unsigned i = 0; i < n->num_accessors(); ++i) accept(n->get_accessor(i)->get_result_type());
}

void occ_visitor::visit(subrange* n) {
    accept(n->get_lower());
    accept(n->get_upper());
}

shared_ptr<doc> pp_dag_visitor::operator()(ast const* a, bool definitions_first) {
    return on_deep_stack([&]() -> shared_ptr<doc> {
        auto* root = const_cast<ast*>(a);
        reset();
        m_definitions_first = definitions_first;
        m_occs(root);
        shared_ptr<doc> body = accept(root);
        shared_ptr<composite_doc> result = composite();
        for (shared_ptr<doc> const& definition : m_definitions) result << definition << pp::endl();
        result << body;
        reset();
        return result;
    });
}

void pp_dag_visitor::reset() {
    pp_visitor::reset();
    m_occs.reset();
    m_numbers.reset();
    m_definitions.clear();
}

shared_ptr<doc> pp_dag_visitor::accept(ast* a) {
    if (!is_worth_sharing(a) || m_occs.get_num_occs(a) < 2) return accept_core(a);
    if (unsigned* known = m_numbers.find(a)) return pp::text("#" + std::to_string(*known));
    unsigned number = m_numbers.size() + 1;
    m_numbers.insert(a, number);
    shared_ptr<doc> body = accept_core(a);
    shared_ptr<doc> reference = pp::text("#" + std::to_string(number));
    shared_ptr<composite_doc> definition = composite();
    definition << reference << body;
    if (!m_definitions_first) return definition;
    m_definitions.push_back(definition);
    return reference;
}

} // namespace vexor
