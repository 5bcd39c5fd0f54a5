// Symbol table and factory of the term language.
//
// The manager numbers the nodes, holds the global names of constants and types with their scopes, the
// predefined world of declarations, and the tracker of input positions. It shares the nodes of predefined
// names (one true, one bool) and nothing else: terms are not hash-consed.
#pragma once

#include "ast/node/nodes.h"
#include "base/position_tracker.h"
#include "base/shared_ptr.h"
#include "base/vector.h"

#include <iosfwd>
#include <memory>

namespace vexor {

class ast_manager_imp;

class ast_manager {
public:
    ast_manager();
    ~ast_manager();
    ast_manager(ast_manager const&) = delete; // nodes know their manager by address
    ast_manager& operator=(ast_manager const&) = delete;

    // Back to the predefined world, with the same serial numbers. Every node built before is invalid: it may
    // only be released.
    void reset();
    // Opens a scope of global declarations; pop drops the newest n with the names that they own.
    void push();
    void pop(unsigned n);
    unsigned num_scopes() const;

    position_tracker& get_position_tracker() { return m_position_tracker; }
    position_tracker::position get_position(ast const* n) const { return get_position(n->get_pos()); }
    position_tracker::position get_position(int pos) const { return m_position_tracker.get_position(pos); }

    // --- Names.
    bool is_global_name_expr(ustring const& name) const;
    bool is_type_name(ustring const& name) const;
    // Raise undefined_name_exception at pos.
    var_decl* get_global_var_decl(ustring const& name, int pos) const;
    shared_ptr<name_expr> create_global_name_expr(ustring const& name, int pos);
    shared_ptr<type_name> create_type_name(ustring const& name, int pos);
    // Null when there is no such name.
    const_decl* find_const_decl(ustring const& name) const;
    type_decl* find_type_decl(ustring const& name) const;

    // Enter a name, after the type check if that is on. A name in use raises
    // constant_already_defined_exception or type_already_defined_exception, and nothing has changed. A
    // constant that is not owned keeps its name beyond the pop of its scope, until reset.
    void add_global_type_decl(type_decl* d);
    void add_global_const_decl(const_decl* d, bool owned);

    // The owned declarations in scope, oldest first.
    shared_ptr_vector<decl> const& get_decls() const;
    unsigned num_const_names() const;
    unsigned num_type_names() const;

    // --- Factories.
    // The shared names of the built-in types; the position is ignored.
    type_name* create_bool_type(int pos = -1);
    type_name* create_number_type(int pos = -1);
    type_name* create_real_type(int pos = -1);
    type_name* create_int_type(int pos = -1);
    type_name* create_nat_type(int pos = -1);
    // The shared name expressions of the predefined constants, for example mk_true() and mk_name<and_decl>().
    expr* mk_true() { return mk_shared_name(m_true, m_true_decl); }
    expr* mk_false() { return mk_shared_name(m_false, m_false_decl); }
    template <class D>
    expr* mk_name() {
        op_index i = index_of(static_cast<D const*>(nullptr));
        return mk_shared_name(m_op_names[i], m_ops[i]);
    }
    // The predefined declaration of class D, for example get_builtin<and_decl>().
    template <class D>
    D* get_builtin() const;
    true_decl* get_true_decl() const { return m_true_decl; }
    false_decl* get_false_decl() const { return m_false_decl; }
    type_decl* get_any_decl() const { return m_any_decl; }

    template <class T>
    T* create_builtin_type_decl(char const* name, type* definition);
    template <class T>
    T* create_builtin_const_decl(char const* name, type* t, bool owned);

    // The type of all x for which the predicate holds; subtype_predicate_exception if it has no function
    // type.
    shared_ptr<subtype> create_subtype_for_pred(var_decl* pred, int pos);
    // Declares the elements. empty_scalar_type_exception, constant_already_defined_exception; then nothing
    // changed.
    shared_ptr<scalar_type> create_scalar_type(type_decl* d, identifier* const* ids, unsigned n, int pos);
    // Declares constructors, recognizers and accessors. empty_datatype_exception, invalid_datatype_exception,
    // constant_already_defined_exception; then nothing changed.
    shared_ptr<datatype> create_datatype(constructor_decl* const* constructors, unsigned n, int pos);

    // --- Questions about the whole.
    // Number of distinct nodes reachable from the declarations in scope.
    unsigned get_num_nodes() const;
    void display(std::ostream& out) const;
    void display_as_dag(std::ostream& out) const;
    void display_info(std::ostream& out) const;
    // Nodes that exist, and the bytes reserved for them.
    std::size_t num_live_nodes() const { return m_store->num_live(); }
    std::size_t node_bytes() const { return m_store->reserved_bytes(); }
    void check_invariant() const;

    // For the nodes: their numbers and their memory.
    unsigned take_id() { return m_next_id++; }
    void* allocate_cell(std::size_t bytes) { return m_store->allocate(bytes); }

private:
    static expr* mk_shared_name(shared_ptr<name_expr>& cache, const_decl* d);
    static type_name* mk_shared_type(shared_ptr<type_name>& cache, type_decl* d);
    void drop_everything();
    void break_cycles();

    // The predefined world, in predefined.cpp.
    void declare_predefined();
    void create_bool_type_decl();
    void create_nat_type_decl();
    template <class T>
    T* create_predicate_type_decl(char const* name, const_decl* pred);
    void create_operators(op_signature signature);
    shared_ptr<type> operator_type(op_signature signature);
    void create_bv_operators();

    enum op_index : unsigned {
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY) X##_index,
#include "ast/node/builtin_ops.def"
        num_ops
    };
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    static constexpr op_index index_of(X##_decl const*) { return X##_index; }
#include "ast/node/builtin_ops.def"

    unsigned m_next_id = 0;                 // number of the next node
    node_store* m_store;                    // memory of the nodes
    std::unique_ptr<ast_manager_imp> m_imp; // names and scopes; replaced as a whole by reset
    const_decl* m_ops[num_ops] = {};        // the operators, held by m_imp
    type_decl* m_bool_decl = nullptr;       // predefined types, held by m_imp
    type_decl* m_number_decl = nullptr;
    type_decl* m_real_decl = nullptr;
    type_decl* m_int_decl = nullptr;
    type_decl* m_nat_decl = nullptr;
    type_decl* m_any_decl = nullptr;
    true_decl* m_true_decl = nullptr;   // held by the type bool
    false_decl* m_false_decl = nullptr; // held by the type bool
    shared_ptr<type_name> m_bool_type;  // shared names of the built-in types, null until needed
    shared_ptr<type_name> m_number_type;
    shared_ptr<type_name> m_real_type;
    shared_ptr<type_name> m_int_type;
    shared_ptr<type_name> m_nat_type;
    shared_ptr<type_name> m_any_type;
    shared_ptr<name_expr> m_op_names[num_ops]; // shared names of the operators, null until needed
    shared_ptr<name_expr> m_true;              // shared names of the constants, null until needed
    shared_ptr<name_expr> m_false;
    position_tracker m_position_tracker; // of all input read through this manager
};

std::ostream& operator<<(std::ostream& out, ast_manager const& m);

template <class D>
D* ast_manager::get_builtin() const {
    return static_cast<D*>(m_ops[index_of(static_cast<D const*>(nullptr))]);
}

template <class T>
T* ast_manager::create_builtin_type_decl(char const* name, type* definition) {
    shared_ptr<identifier> id = mk<identifier>(this, ustring(name), -1);
    shared_ptr<T> d = mk<T>(id, definition, -1);
    add_global_type_decl(d.get());
    return d.get();
}

template <class T>
T* ast_manager::create_builtin_const_decl(char const* name, type* t, bool owned) {
    shared_ptr<identifier> id = mk<identifier>(this, ustring(name), -1);
    shared_ptr<T> d = mk<T>(id, t, -1);
    add_global_const_decl(d.get(), owned);
    return d.get();
}

} // namespace vexor
