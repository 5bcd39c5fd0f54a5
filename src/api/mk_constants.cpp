// Construction of constants.
#define VEXOR_WITH_GMP
#include "api/api_exceptions.h"
#include "api/context_wrapper.h"
#include "ast/node/nodes.h"
#include "ast/types/op_rules.h"

using namespace vexor;

namespace {

vexor_expr number(context_wrapper& wrapper, numeral const& value) {
    return handle_of(static_cast<expr*>(wrapper.keep(mk<numeral_expr>(wrapper.get_manager(), value, -1))));
}

vexor_expr mk_vector(context_wrapper& wrapper, unsigned size, numeral const& value) {
    shared_ptr<bitvector_constant> const c =
        mk<bitvector_constant>(wrapper.get_manager(), size, mod_2k(value, size), -1);
    return handle_of(static_cast<expr*>(wrapper.keep(c)));
}

void check_size(unsigned size) {
    if (size == 0 || size > max_bitvector_size) throw invalid_bitvector_size_exception();
}

} // namespace

extern "C" {

vexor_expr vexor_mk_true(vexor_context ctx) {
    expr* const e = to_wrapper(ctx).get_manager()->mk_true();
    note_handle_alive(e);
    return handle_of(e);
}

vexor_expr vexor_mk_false(vexor_context ctx) {
    expr* const e = to_wrapper(ctx).get_manager()->mk_false();
    note_handle_alive(e);
    return handle_of(e);
}

vexor_expr vexor_mk_num(vexor_context ctx, int n) { return number(to_wrapper(ctx), numeral(n)); }

vexor_expr vexor_mk_num_from_string(vexor_context ctx, const char* text) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (text == nullptr) misuse(__func__, "the text is null");
    return number(wrapper, numeral(text, 10));
}

vexor_expr vexor_mk_num_from_mpz(vexor_context ctx, mpz_srcptr n) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (n == nullptr) misuse(__func__, "the number is null");
    return number(wrapper, numeral(n));
}

vexor_expr vexor_mk_num_from_mpq(vexor_context ctx, mpq_srcptr n) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (n == nullptr) misuse(__func__, "the number is null");
    return number(wrapper, numeral(n));
}

vexor_expr vexor_mk_bv_constant(vexor_context ctx, unsigned size, unsigned value) {
    context_wrapper& wrapper = to_wrapper(ctx);
    check_size(size);
    return mk_vector(wrapper, size, numeral(value));
}

// Through GMP's words: doubling a number for each bit would cost the square of the size.
vexor_expr vexor_mk_bv_constant_from_array(vexor_context ctx, unsigned size, const int bits[]) {
    context_wrapper& wrapper = to_wrapper(ctx);
    if (bits == nullptr) misuse(__func__, "the array is null");
    check_size(size);
    mpz_t value;
    mpz_init2(value, size);
    for (unsigned i = 0; i < size; ++i)
        if (bits[i] != 0) mpz_setbit(value, i);
    numeral const result(value);
    mpz_clear(value);
    return mk_vector(wrapper, size, result);
}

} // extern "C"
