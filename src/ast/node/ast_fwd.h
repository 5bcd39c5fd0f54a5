// Forward declarations of all node classes, from the two class tables.
#pragma once

namespace vexor {

class ast;
class ast_manager;
class ast_visitor;

#define VEXOR_NODE(CLASS, PARENT) class CLASS;
#include "ast/node/ast_classes.def"
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    class X##_decl;                                                                                          \
    class X##_name_expr;
#include "ast/node/builtin_ops.def"

// The declared type of a built-in operator.
enum class op_signature {
    bool2,           // (bool, bool) to bool
    bool1,           // bool to bool
    real_predicate,  // number to bool; defines the type real
    int_predicate,   // number to bool; defines the type int
    number_relation, // (number, number) to bool
    number2,         // (number, number) to number
    any_relation,    // (any, any) to bool
    if_then_else,    // (bool, any, any) to any
    bv_plain,        // (any, any) to any, a placeholder: the type checker knows the widths
    bv_indexed,      // with nat parameters, a placeholder as well
};

// What a built-in operator belongs to; answers is_arith_op and is_bv_operator.
enum class op_family { logic, arith, bitvector };

} // namespace vexor
