#include "ast/types/op_rules.h"

#include "ast/node/ast_manager.h"
#include "ast/types/equivalent_types.h"
#include "ast/types/join_types.h"
#include "ast/types/type_checker_exception.h"

#include <cstdint>
#include <cstdlib>
#include <utility>

namespace vexor {

namespace {

constexpr char const* wrong_number = "wrong number of arguments";
constexpr char const* not_boolean = "argument is not boolean.";
constexpr char const* not_numeral = "argument is not a numeral.";
constexpr char const* not_bitvector = "argument is not a bitvector.";
constexpr char const* not_number = "argument must be a number.";
constexpr char const* wrong_extract = "invalid bitvector extract.";
constexpr char const* wrong_repeat = "invalid repeat operation.";
constexpr char const* wrong_extend = "invalid extend operation.";

// The value of a numeral that is a natural number not above limit.
bool get_natural(expr* e, unsigned limit, unsigned& value) {
    if (!is_a<numeral_expr>(e)) return false;
    numeral const& n = static_cast<numeral_expr*>(e)->get_value();
    if (!n.is_int() || n.is_neg() || n > numeral(static_cast<int>(limit))) return false;
    value = static_cast<unsigned>(std::strtoul(n.to_string().c_str(), nullptr, 10));
    return true;
}

void require_args(application* a, unsigned n) {
    if (a->num_args() != n) throw_type_error(a, wrong_number);
}

unsigned require_bitvector(application* a, unsigned i) {
    bitvector_type* t = get_bitvector_type(a->get_arg(i));
    if (t == nullptr) throw_type_error(a, not_bitvector);
    return t->get_size();
}

void require_numeral(application* a, unsigned i) {
    if (!is_a<numeral_expr>(a->get_arg(i))) throw_type_error(a, not_number);
}

shared_ptr<type> make_bitvector_type(application* a, std::uint64_t size, char const* message) {
    if (size == 0 || size > max_bitvector_size) throw_type_error(a, message);
    return mk<bitvector_type>(a->get_manager(), static_cast<unsigned>(size), -1);
}

shared_ptr<type> sum_type(application* a) {
    for (expr* arg : a->get_args())
        if (cast_type<int_type_name>(arg->get_type()) == nullptr) return a->get_manager()->create_real_type();
    return a->get_manager()->create_int_type();
}

// Subtypes do not carry over to the result: (bv-not x) may leave the subtype of x.
shared_ptr<type> first_bitvector_type(application* a) {
    bitvector_type* t = get_bitvector_type(a->get_arg(0));
    return t != nullptr ? t : a->get_arg(0)->get_type();
}

shared_ptr<type> concat_type(application* a) {
    std::uint64_t size = 0;
    for (unsigned i = 0; i < a->num_args(); ++i) size += require_bitvector(a, i);
    return make_bitvector_type(a, size, wrong_bitvector_size);
}

shared_ptr<type> extract_type(application* a) {
    require_args(a, 3);
    require_numeral(a, 0);
    require_numeral(a, 1);
    unsigned high = 0;
    unsigned low = 0;
    if (!get_extract_bounds(a, high, low)) throw_type_error(a, wrong_extract);
    return make_bitvector_type(a, std::uint64_t{high} - low + 1, wrong_extract);
}

shared_ptr<type> extend_type(application* a) {
    require_args(a, 2);
    unsigned size = require_bitvector(a, 0);
    require_numeral(a, 1);
    unsigned n = 0;
    if (!get_natural(a->get_arg(1), max_bitvector_size, n)) throw_type_error(a, wrong_extend);
    return make_bitvector_type(a, std::uint64_t{size} + n, wrong_extend);
}

shared_ptr<type> repeat_type(application* a) {
    require_args(a, 2);
    unsigned size = require_bitvector(a, 0);
    require_numeral(a, 1);
    unsigned n = 0;
    if (!get_natural(a->get_arg(1), max_bitvector_size, n)) throw_type_error(a, wrong_repeat);
    return make_bitvector_type(a, std::uint64_t{size} * n, wrong_repeat);
}

void check_all(application* a, bool (*holds)(expr*), char const* message) {
    for (expr* arg : a->get_args())
        if (!holds(arg)) throw_type_error(a, message);
}

void check_same_size(application* a) {
    require_args(a, 2);
    unsigned first = require_bitvector(a, 0);
    if (require_bitvector(a, 1) != first) throw_type_error(a, "bitvectors have different sizes.");
}

void check_equality(application* a) {
    require_args(a, 2);
    if (!equivalent_types(a->get_arg(0)->get_type(), a->get_arg(1)->get_type()))
        throw_type_error(a, "incompatible types in equality.");
}

void check_ite(application* a) {
    require_args(a, 3);
    if (!has_bool_type(a->get_arg(0)))
        throw_type_error(a, "condition of if-then-else expression is not a boolean.");
    if (!equivalent_types(a->get_arg(1)->get_type(), a->get_arg(2)->get_type()))
        throw_type_error(a, "incompatible types in then/else braches of if-then-else.");
}

void check_extract(application* a) {
    require_args(a, 3);
    require_numeral(a, 0);
    require_numeral(a, 1);
    unsigned size = require_bitvector(a, 2);
    unsigned high = 0;
    unsigned low = 0;
    if (!get_extract_bounds(a, high, low) || high >= size) throw_type_error(a, wrong_extract);
}

void check_shift(application* a) {
    require_args(a, 2);
    unsigned size = require_bitvector(a, 0);
    require_numeral(a, 1);
    unsigned n = 0;
    if (!get_natural(a->get_arg(1), size, n)) throw_type_error(a, "invalid shift operation.");
}

void check_bitvectors(application* a, unsigned n) {
    require_args(a, n);
    for (unsigned i = 0; i < n; ++i) require_bitvector(a, i);
}

} // namespace

void throw_type_error(ast const* node, char const* message) {
    throw type_checker_exception(node->get_position(), message);
}

bitvector_type* get_bitvector_type(expr* e) { return cast_type<bitvector_type>(e->get_type()); }

bool get_extract_bounds(application* extract, unsigned& high, unsigned& low) {
    if (extract->num_args() != 3 || !get_natural(extract->get_arg(0), max_bitvector_size - 1, high) ||
        !get_natural(extract->get_arg(1), max_bitvector_size - 1, low))
        return false;
    if (high < low) std::swap(high, low);
    return true;
}

shared_ptr<type> op_result_type(op_rule rule, application* a) {
    ast_manager* m = a->get_manager();
    switch (rule) {
    case op_rule::connective:
    case op_rule::negation:
    case op_rule::implication:
    case op_rule::number_predicate:
    case op_rule::number_relation:
    case op_rule::equality:
    case op_rule::bv_relation:
        return m->create_bool_type();
    case op_rule::sum:
        return sum_type(a);
    case op_rule::quotient:
        return m->create_real_type();
    case op_rule::if_then_else:
        require_args(a, 3);
        return join_types(a->get_arg(1)->get_type(), a->get_arg(2)->get_type());
    case op_rule::bv_unary:
    case op_rule::bv_binary:
    case op_rule::bv_shift:
        return first_bitvector_type(a);
    case op_rule::bv_comparison:
    case op_rule::bv_reduction:
        return mk<bitvector_type>(m, 1U, -1);
    case op_rule::bv_concat:
        return concat_type(a);
    case op_rule::bv_extract:
        return extract_type(a);
    case op_rule::bv_extend:
        return extend_type(a);
    case op_rule::bv_repeat:
        return repeat_type(a);
    }
    VEXOR_UNREACHABLE();
}

void check_op_arguments(op_rule rule, application* a) {
    switch (rule) {
    case op_rule::implication:
        require_args(a, 2);
        [[fallthrough]];
    case op_rule::connective:
        check_all(a, has_bool_type, not_boolean);
        break;
    case op_rule::negation:
        require_args(a, 1);
        check_all(a, has_bool_type, not_boolean);
        break;
    case op_rule::number_predicate:
        require_args(a, 1);
        check_all(a, has_number_type, "invalid function argument, type mismatch.");
        break;
    case op_rule::number_relation:
    case op_rule::quotient:
        require_args(a, 2);
        [[fallthrough]];
    case op_rule::sum:
        check_all(a, has_number_type, not_numeral);
        break;
    case op_rule::equality:
        check_equality(a);
        break;
    case op_rule::if_then_else:
        check_ite(a);
        break;
    case op_rule::bv_unary:
    case op_rule::bv_reduction:
        check_bitvectors(a, 1);
        break;
    case op_rule::bv_binary:
    case op_rule::bv_relation:
    case op_rule::bv_comparison:
        check_same_size(a);
        break;
    case op_rule::bv_concat:
        check_bitvectors(a, a->num_args());
        break;
    case op_rule::bv_extract:
        check_extract(a);
        break;
    case op_rule::bv_shift:
        check_shift(a);
        break;
    case op_rule::bv_extend:
    case op_rule::bv_repeat:
        break;
    }
    // What remains is that the result exists: sizes within the limit.
    a->get_type();
}

} // namespace vexor
