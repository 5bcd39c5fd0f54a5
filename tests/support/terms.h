// Short names to build terms by hand in tests. Every node is kept alive until the builder goes.
#pragma once

#include "ast/node/ast_manager.h"

#include <initializer_list>
#include <string>

namespace vexor_test {

class terms {
public:
    explicit terms(vexor::ast_manager& m)
        : m_manager(m) {}

    vexor::ast_manager& manager() { return m_manager; }
    // The position of the nodes made from here on.
    void at(int pos) { m_pos = pos; }

    template <class T>
    T* keep(vexor::shared_ptr<T> const& n) {
        m_kept.push_back(n.get());
        return n.get();
    }
    template <class T, class... A>
    T* make(A&&... args) {
        return keep(vexor::mk<T>(std::forward<A>(args)...));
    }
    vexor::identifier* id(char const* name) {
        return make<vexor::identifier>(&m_manager, vexor::ustring(name), m_pos);
    }

    // --- Types.
    vexor::type* bool_type() { return m_manager.create_bool_type(); }
    vexor::type* int_type() { return m_manager.create_int_type(); }
    vexor::type* nat_type() { return m_manager.create_nat_type(); }
    vexor::type* real_type() { return m_manager.create_real_type(); }
    vexor::type* number_type() { return m_manager.create_number_type(); }
    vexor::type* bv_type(unsigned size) { return make<vexor::bitvector_type>(&m_manager, size, m_pos); }
    vexor::type* function_type(std::initializer_list<vexor::type*> domain, vexor::type* range);
    vexor::type* tuple_type(std::initializer_list<vexor::type*> components);
    vexor::type* record_type(std::initializer_list<std::pair<char const*, vexor::type*>> fields);
    vexor::type* subrange(vexor::expr* lower, vexor::expr* upper) {
        return make<vexor::subrange>(lower, upper, m_pos);
    }
    // A new type of that name, uninterpreted or defined.
    vexor::type_decl* declare_type(char const* name, vexor::type* definition = nullptr);
    vexor::type* named_type(char const* name) {
        return keep(m_manager.create_type_name(vexor::ustring(name), m_pos));
    }
    // A new scalar type of that name with elements named name0, name1, ...
    vexor::type* declare_scalar(char const* name, unsigned n);

    // --- Expressions.
    vexor::var_decl* variable(char const* name, vexor::type* t) {
        return make<vexor::var_decl>(id(name), t, m_pos);
    }
    // A use of a declaration.
    vexor::expr* use(vexor::var_decl* d) { return keep(d->create_name_expr(m_pos)); }
    // A use of a global name.
    vexor::expr* name(char const* n) {
        return keep(m_manager.create_global_name_expr(vexor::ustring(n), m_pos));
    }
    // A use of a new global constant.
    vexor::expr* constant(char const* name, vexor::type* t);
    vexor::expr* num(char const* value) {
        return make<vexor::numeral_expr>(&m_manager, vexor::numeral(value, 10), m_pos);
    }
    vexor::expr* bv(unsigned size, char const* value) {
        return make<vexor::bitvector_constant>(&m_manager, size, vexor::numeral(value, 10), m_pos);
    }
    vexor::expr* mk_true() { return m_manager.mk_true(); }
    vexor::expr* mk_false() { return m_manager.mk_false(); }
    vexor::application* app(vexor::expr* fun, std::initializer_list<vexor::expr*> args) {
        return make<vexor::application>(fun, args.begin(), static_cast<unsigned>(args.size()), m_pos);
    }
    // An application of the operator with that name in the table of constants, for example "bv-add".
    vexor::application* op(char const* name, std::initializer_list<vexor::expr*> args) {
        return app(this->name(name), args);
    }
    vexor::expr* lambda(std::initializer_list<vexor::var_decl*> bindings, vexor::expr* body) {
        return make<vexor::lambda_expr>(bindings.begin(), static_cast<unsigned>(bindings.size()), body,
                                        m_pos);
    }
    vexor::expr* forall(std::initializer_list<vexor::var_decl*> bindings, vexor::expr* body) {
        return make<vexor::forall_expr>(bindings.begin(), static_cast<unsigned>(bindings.size()), body,
                                        m_pos);
    }
    vexor::expr* exists(std::initializer_list<vexor::var_decl*> bindings, vexor::expr* body) {
        return make<vexor::exists_expr>(bindings.begin(), static_cast<unsigned>(bindings.size()), body,
                                        m_pos);
    }
    vexor::let_decl* let_variable(char const* name, vexor::type* t, vexor::expr* definition) {
        return make<vexor::let_decl>(id(name), t, definition, m_pos);
    }
    vexor::expr* let(std::initializer_list<vexor::let_decl*> bindings, vexor::expr* body) {
        return make<vexor::let_expr>(bindings.begin(), static_cast<unsigned>(bindings.size()), body, m_pos);
    }
    vexor::expr* tuple(std::initializer_list<vexor::expr*> components) {
        return make<vexor::tuple_literal>(&m_manager, components.begin(),
                                          static_cast<unsigned>(components.size()), m_pos);
    }
    vexor::expr* record(std::initializer_list<std::pair<char const*, vexor::expr*>> entries);
    vexor::expr* select(vexor::expr* tuple, unsigned idx) {
        return make<vexor::tuple_selection>(tuple, idx, m_pos);
    }
    vexor::expr* select(vexor::expr* record, char const* field) {
        return make<vexor::record_selection>(record, id(field), m_pos);
    }
    vexor::expr* update(vexor::expr* function, std::initializer_list<vexor::expr*> args, vexor::expr* value) {
        return make<vexor::function_update_expr>(function, args.begin(), static_cast<unsigned>(args.size()),
                                                 value, m_pos);
    }
    vexor::expr* update(vexor::expr* tuple, int idx, vexor::expr* value) {
        return make<vexor::tuple_update_expr>(tuple, idx, value, m_pos);
    }
    vexor::expr* update(vexor::expr* record, char const* field, vexor::expr* value) {
        return make<vexor::record_update_expr>(record, id(field), value, m_pos);
    }

private:
    vexor::ast_manager& m_manager;
    int m_pos = -1;                              // see at
    vexor::shared_ptr_vector<vexor::ast> m_kept; // every node made here
};

// The node as it prints, on one line.
std::string to_text(vexor::ast const* n);
template <class T>
std::string to_text(vexor::shared_ptr<T> const& n) {
    return to_text(static_cast<vexor::ast const*>(n.get()));
}

} // namespace vexor_test
