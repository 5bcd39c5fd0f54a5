// The predefined world of a manager. Its order is fixed: it gives the declarations their serial numbers.
#include "ast/node/ast_manager.h"

namespace vexor {

void ast_manager::declare_predefined() {
    create_bool_type_decl();
    create_operators(op_signature::bool2);
    create_operators(op_signature::bool1);
    m_number_decl = create_builtin_type_decl<number_decl>("number", nullptr);
    create_operators(op_signature::real_predicate);
    m_real_decl = create_predicate_type_decl<real_decl>("real", get_builtin<real_pred_decl>());
    create_operators(op_signature::int_predicate);
    m_int_decl = create_predicate_type_decl<int_decl>("int", get_builtin<int_pred_decl>());
    create_operators(op_signature::number_relation);
    create_operators(op_signature::number2);
    create_nat_type_decl();
    m_any_decl = create_builtin_type_decl<type_decl>("any", nullptr);
    m_any_type = m_any_decl->create_type_name(-1);
    create_operators(op_signature::any_relation);
    create_operators(op_signature::if_then_else);
    create_bv_operators();
}

void ast_manager::create_bool_type_decl() {
    m_bool_decl = create_builtin_type_decl<bool_decl>("bool", nullptr);
    auto definition = mk<scalar_type>(m_bool_decl, static_cast<identifier* const*>(nullptr), 0U, -1);
    m_bool_decl->set_definition(definition.get());
    auto declare = [&]<class D>(D*, char const* name, int index) {
        shared_ptr<identifier> id = mk<identifier>(this, ustring(name), -1);
        shared_ptr<D> d = mk<D>(id, create_bool_type(), definition, index, -1);
        add_global_const_decl(d.get(), false);
        return d;
    };
    shared_ptr<false_decl> f = declare(static_cast<false_decl*>(nullptr), "false", 0);
    shared_ptr<true_decl> t = declare(static_cast<true_decl*>(nullptr), "true", 1);
    scalar_element_decl* elements[2] = {f.get(), t.get()};
    definition->set_elements(elements, 2);
    m_false_decl = f.get();
    m_true_decl = t.get();
}

template <class T>
T* ast_manager::create_predicate_type_decl(char const* name, const_decl* pred) {
    return create_builtin_type_decl<T>(name, create_subtype_for_pred(pred, -1).get());
}

void ast_manager::create_nat_type_decl() {
    shared_ptr<identifier> id = mk<identifier>(this, ustring("idx"), -1);
    shared_ptr<var_decl> d = mk<var_decl>(id, create_int_type(), -1);
    shared_ptr<numeral_expr> zero = mk<numeral_expr>(this, numeral::m_zero, -1);
    shared_ptr<name_expr> idx = d->create_name_expr(-1);
    shared_ptr<application> pred = mk<application>(mk_name<ge_decl>(), idx.get(), zero.get(), -1);
    shared_ptr<subtype> definition = mk<subtype>(d, pred, -1);
    m_nat_decl = create_builtin_type_decl<nat_decl>("nat", definition.get());
}

// Declares the operators with that signature, in the order of the table; they share their type.
void ast_manager::create_operators(op_signature signature) {
    shared_ptr<type> t = operator_type(signature);
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    if (op_signature::SIGNATURE == signature)                                                                \
        m_ops[X##_index] = create_builtin_const_decl<X##_decl>(TEXT, t.get(), true);
#include "ast/node/builtin_ops.def"
}

// The two placeholder types are made once, and the operators stand in one order whatever their type.
void ast_manager::create_bv_operators() {
    shared_ptr<type> plain = operator_type(op_signature::bv_plain);
    shared_ptr<type> indexed = operator_type(op_signature::bv_indexed);
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    if (op_family::FAMILY == op_family::bitvector)                                                           \
        m_ops[X##_index] = create_builtin_const_decl<X##_decl>(                                              \
            TEXT, op_signature::SIGNATURE == op_signature::bv_plain ? plain.get() : indexed.get(), true);
#include "ast/node/builtin_ops.def"
}

shared_ptr<type> ast_manager::operator_type(op_signature signature) {
    type* boolean = create_bool_type();
    auto number = [this] { return create_number_type(); };
    type* any = m_any_type.get();
    auto function = [](std::initializer_list<type*> domain, type* range) {
        return function_type::construct(domain.begin(), static_cast<unsigned>(domain.size()), range, -1);
    };
    switch (signature) {
    case op_signature::bool2:
        return function({boolean, boolean}, boolean);
    case op_signature::bool1:
        return function({boolean}, boolean);
    case op_signature::real_predicate:
    case op_signature::int_predicate:
        return function({number()}, boolean);
    case op_signature::number_relation:
        return function({number(), number()}, boolean);
    case op_signature::number2:
        return function({number(), number()}, number());
    case op_signature::any_relation:
        return function({any, any}, boolean);
    case op_signature::if_then_else:
        return function({boolean, any, any}, any);
    case op_signature::bv_plain:
        return function({any, any}, any);
    case op_signature::bv_indexed:
        return function({create_nat_type(), create_nat_type()}, any);
    }
    VEXOR_UNREACHABLE();
}

} // namespace vexor
