#include "support/terms.h"

#include "ast/print/pp_visitor.h"

#include <sstream>
#include <vector>

namespace vexor_test {

using namespace vexor;

type* terms::function_type(std::initializer_list<type*> domain, type* range) {
    return keep(
        vexor::function_type::construct(domain.begin(), static_cast<unsigned>(domain.size()), range, m_pos));
}

type* terms::tuple_type(std::initializer_list<type*> components) {
    std::vector<var_decl*> elements;
    for (type* t : components)
        elements.push_back(make<var_decl>(static_cast<identifier*>(nullptr), t, m_pos));
    return make<vexor::tuple_type>(&m_manager, elements.data(), static_cast<unsigned>(elements.size()),
                                   m_pos);
}

type* terms::record_type(std::initializer_list<std::pair<char const*, type*>> fields) {
    std::vector<field*> nodes;
    for (auto const& [name, t] : fields) nodes.push_back(make<field>(id(name), t, m_pos));
    return make<vexor::record_type>(&m_manager, nodes.data(), static_cast<unsigned>(nodes.size()), m_pos);
}

type_decl* terms::declare_type(char const* name, type* definition) {
    type_decl* d = make<type_decl>(id(name), definition, m_pos);
    m_manager.add_global_type_decl(d);
    return d;
}

type* terms::declare_scalar(char const* name, unsigned n) {
    type_decl* d = make<type_decl>(id(name), static_cast<type*>(nullptr), m_pos);
    std::vector<identifier*> ids;
    for (unsigned i = 0; i < n; ++i) ids.push_back(id((name + std::to_string(i)).c_str()));
    d->set_definition(keep(m_manager.create_scalar_type(d, ids.data(), n, m_pos)));
    m_manager.add_global_type_decl(d);
    return named_type(name);
}

expr* terms::constant(char const* name, type* t) {
    const_decl* d = make<const_decl>(id(name), t, m_pos);
    m_manager.add_global_const_decl(d, true);
    return use(d);
}

expr* terms::record(std::initializer_list<std::pair<char const*, expr*>> entries) {
    std::vector<record_entry*> nodes;
    for (auto const& [name, e] : entries) nodes.push_back(make<record_entry>(id(name), e, m_pos));
    return make<record_literal>(&m_manager, nodes.data(), static_cast<unsigned>(nodes.size()), m_pos);
}

std::string to_text(ast const* n) {
    pp::layout_config config;
    config.m_single_line = true;
    std::ostringstream out;
    pp_visitor()(n)->display(out, 0, config);
    return out.str();
}

} // namespace vexor_test
