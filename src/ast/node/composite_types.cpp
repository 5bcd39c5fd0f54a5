#include "ast/node/composite_types.h"

#include "ast/node/ast_exceptions.h"
#include "ast/visit/sorted_children.h"

namespace vexor {

function_type::function_type(var_decl* const* domain, unsigned n, type* range, int pos)
    : type(pos)
    , m_range(range)
    , m_domain(sizeof(function_type), domain, n) {
    if (n == 0) throw empty_domain_function_type_exception(get_position());
}

function_type::function_type(var_decl* arg, type* range, int pos)
    : function_type(&arg, 1, range, pos) {}

namespace {

struct two_decls {
    var_decl* m_decls[2];
};

} // namespace

function_type::function_type(var_decl* arg1, var_decl* arg2, type* range, int pos)
    : function_type(two_decls{{arg1, arg2}}.m_decls, 2, range, pos) {}

shared_ptr<function_type> function_type::construct(type* const* domain, unsigned n, type* range, int pos) {
    shared_ptr_vector<var_decl> decls;
    for (unsigned i = 0; i < n; ++i)
        decls.push_back(
            mk<var_decl>(static_cast<identifier*>(nullptr), domain[i], domain[i]->get_pos()).get());
    return mk<function_type>(decls.data(), n, range, pos);
}

shared_ptr<function_type> function_type::construct_unary(type* arg, type* range, int pos) {
    return construct(&arg, 1, range, pos);
}

shared_ptr<function_type> function_type::construct_binary(type* arg1, type* arg2, type* range, int pos) {
    type* domain[2] = {arg1, arg2};
    return construct(domain, 2, range, pos);
}

shared_ptr<type> function_type::clone() const { return clone(m_domain.data(), m_domain.size(), get_range()); }

shared_ptr<function_type> function_type::clone(var_decl* const* domain, unsigned n, type* range) const {
    return mk<function_type>(domain, n, range, get_pos());
}

void function_type::set_domain(var_decl* const* domain, unsigned n) {
    m_domain.assign(domain, n);
    reset_cache();
}

void function_type::set_range(type* t) {
    m_range = t;
    reset_cache();
}

tuple_type::tuple_type(ast_manager*, var_decl* const* elements, unsigned n, int pos)
    : type(pos)
    , m_elements(sizeof(tuple_type), elements, n) {
    if (n == 0) throw empty_tuple_type_exception(get_position());
}

shared_ptr<type> tuple_type::clone() const { return clone(m_elements.data(), m_elements.size()); }

shared_ptr<tuple_type> tuple_type::clone(var_decl* const* elements, unsigned n) const {
    return mk<tuple_type>(get_manager(), elements, n, get_pos());
}

void tuple_type::set_elements(var_decl* const* elements, unsigned n) {
    m_elements.assign(elements, n);
    reset_cache();
}

record_type::record_type(ast_manager*, field* const* fields, unsigned n, int pos)
    : type(pos)
    , m_fields(sizeof(record_type), sorted_by_name(fields, n).data(), n) {}

void record_type::check() const {
    if (m_fields.empty()) throw empty_record_type_exception(get_position());
    for (unsigned i = 1; i < m_fields.size(); ++i)
        if (m_fields[i]->get_name() == m_fields[i - 1]->get_name())
            throw record_type_with_duplicate_fields_exception(m_fields[i]->get_position(),
                                                              m_fields[i]->get_name());
}

shared_ptr<type> record_type::clone() const { return clone(m_fields.data(), m_fields.size()); }

shared_ptr<record_type> record_type::clone(field* const* fields, unsigned n) const {
    return mk<record_type>(get_manager(), fields, n, get_pos());
}

field* record_type::find_field(ustring const& name) const { return find_by_name(m_fields, name); }

void record_type::set_fields(field* const* fields, unsigned n) {
    m_fields.assign(sorted_by_name(fields, n).data(), n);
    reset_cache();
}

void sort_fields(field** fields, unsigned n) { sort_by_name(fields, n); }

} // namespace vexor
