// Type rules of the built-in operators, shared by get_type and the type checker.
//
// get_type believes its arguments as far as it can: a type is wanted for terms that nobody checked, too. It
// raises the checker's message only where an application has no type at all.
#pragma once

#include "ast/node/nodes.h"

namespace vexor {

// What an operator asks of its arguments, and the type of its application.
enum class op_rule {
    connective,       // booleans: bool
    negation,         // a boolean: bool
    implication,      // two booleans: bool
    number_predicate, // a number: bool
    number_relation,  // two numbers: bool
    sum,              // numbers: int if all are, else real
    quotient,         // two numbers: real
    equality,         // two of equivalent types: bool
    if_then_else,     // a boolean and two of equivalent types: a type that has the values of both
    bv_unary,         // a bit-vector: its type
    bv_binary,        // two bit-vectors of one size: the type of the first
    bv_relation,      // two bit-vectors of one size: bool
    bv_comparison,    // two bit-vectors of one size: one bit
    bv_reduction,     // a bit-vector: one bit
    bv_concat,        // bit-vectors: the sum of the sizes
    bv_extract,       // two indices, the larger one is the high end whichever comes first, and a bit-vector
    bv_shift,         // a bit-vector and a number not above its size: the type of the first
    bv_extend,        // a bit-vector and a number: the sum of size and number
    bv_repeat,        // a bit-vector and a positive number: the product of size and number
};

// No bit-vector is wider. Types and operations that would make a wider one, or one without bits, are type
// errors.
constexpr unsigned max_bitvector_size = 1U << 24;
constexpr char const* wrong_bitvector_size = "invalid bitvector size.";

// The type of an application of an operator with that rule. Raises type_checker_exception if it has none.
shared_ptr<type> op_result_type(op_rule rule, application* a);

// Raises type_checker_exception if the arguments of a are not those that the rule asks for. The arguments
// themselves have been checked.
void check_op_arguments(op_rule rule, application* a);

// The bit-vector type that the expression's type is or is a subtype of, null for none.
bitvector_type* get_bitvector_type(expr* e);
inline bool has_number_type(expr* e) { return cast_type<number_type_name>(e->get_type()) != nullptr; }
inline bool has_bool_type(expr* e) { return cast_type<bool_type_name>(e->get_type()) != nullptr; }

// The ends of an extraction, from its two index arguments in either order. False unless both are numerals
// that are natural numbers below max_bitvector_size.
bool get_extract_bounds(application* extract, unsigned& high, unsigned& low);

} // namespace vexor
