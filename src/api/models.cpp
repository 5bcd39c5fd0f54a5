// What a satisfiable answer tells.
#define VEXOR_WITH_GMP
#include "api/busy_guard.h"
#include "api/context_wrapper.h"
#include "ast/node/nodes.h"

#include <iostream>
#include <limits>

using namespace vexor;

namespace {

ast_manager const* manager_of(model const& m) { return m.get_context()->get_manager(); }

// Null if the model has no number for d.
numeral const* numeral_value(vexor_model m, vexor_var_decl d, char const* function = __builtin_FUNCTION()) {
    model& values = to_model(m, function);
    expr* const value = values.get_numeral_value_for(to_decl(d, manager_of(values), function));
    return value == nullptr ? nullptr : &static_cast<numeral_expr*>(value)->get_value();
}

template <class T>
T& output(T* result, char const* function = __builtin_FUNCTION()) {
    if (result == nullptr) misuse(function, "an output argument is null");
    return *result;
}

} // namespace

extern "C" {

vexor_model vexor_get_model(vexor_context ctx) {
    model& m = to_context(ctx).get_model();
    return m.is_valid() ? reinterpret_cast<vexor_model>(&m) : nullptr;
}

void vexor_display_model(vexor_model m) {
    to_model(m).display(std::cout);
    std::cout.flush();
}

lbool vexor_get_value(vexor_model m, vexor_var_decl d) {
    model const& values = to_model(m);
    int const var = values.get_context()->get_bool_var_for(to_decl(d, manager_of(values)));
    return var == null_bool_var ? 0 : values.value(var);
}

int vexor_get_assertion_value(vexor_model m, assertion_id id) {
    model const& values = to_model(m);
    int const value = id < 0 ? 0 : values.value(id >> 1);
    return value == ((id & 1) == 0 ? 1 : -1) ? 1 : 0;
}

int vexor_get_int_value(vexor_model m, vexor_var_decl d, long* value) {
    long& result = output(value);
    numeral const* n = numeral_value(m, d);
    if (n == nullptr || !n->fits_long()) return 0;
    result = n->get_long();
    return 1;
}

int vexor_get_arith_value(vexor_model m, vexor_var_decl d, long* num, long* den) {
    long& num_result = output(num);
    long& den_result = output(den);
    numeral const* n = numeral_value(m, d);
    if (n == nullptr || !n->numerator().fits_long() || !n->denominator().fits_long()) return 0;
    num_result = n->numerator().get_long();
    den_result = n->denominator().get_long();
    return 1;
}

int vexor_get_double_value(vexor_model m, vexor_var_decl d, double* value) {
    double& result = output(value);
    numeral const* n = numeral_value(m, d);
    if (n == nullptr) return 0;
    result = n->get_double();
    return 1;
}

int vexor_get_mpz_value(vexor_model m, vexor_var_decl d, mpz_ptr value) {
    mpz_ptr const result = &output(value);
    numeral const* n = numeral_value(m, d);
    if (n == nullptr || !n->is_int()) return 0;
    n->get_mpz(result);
    return 1;
}

int vexor_get_mpq_value(vexor_model m, vexor_var_decl d, mpq_ptr value) {
    mpq_ptr const result = &output(value);
    numeral const* n = numeral_value(m, d);
    if (n == nullptr) return 0;
    n->get_mpq(result);
    return 1;
}

int vexor_get_bitvector_value(vexor_model m, vexor_var_decl d, int n, int* bits) {
    if (n > 0) static_cast<void>(output(bits));
    model& values = to_model(m);
    expr* const value = values.get_bitvector_value_for(to_decl(d, manager_of(values)));
    if (value == nullptr) return 0;
    auto const* constant = static_cast<bitvector_constant*>(value);
    for (int i = 0; i < n; ++i) {
        auto const bit = static_cast<unsigned>(i);
        bits[i] = bit < constant->get_size() && constant->get_value().test_bit(bit) ? 1 : 0;
    }
    return 1;
}

lbool vexor_evaluate_in_model(vexor_model m, vexor_expr e) {
    busy_guard const guard(__func__);
    model const& values = to_model(m);
    shared_ptr<expr> value(to_expr(e, manager_of(values)));
    if (!values.is_valid()) return 0;
    values.get_context()->eval_in_model(value);
    return is_true(value.get()) ? 1 : is_false(value.get()) ? -1 : 0;
}

vexor_int64 vexor_get_cost(vexor_model m) {
    numeral const& cost = to_model(m).cost();
    return cost.fits_long() ? cost.get_long() : std::numeric_limits<vexor_int64>::max();
}

double vexor_get_cost_as_double(vexor_model m) { return to_model(m).cost().get_double(); }

} // extern "C"
