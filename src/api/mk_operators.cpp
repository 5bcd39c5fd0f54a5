// Construction of applications.
#include "api/context_wrapper.h"
#include "ast/node/nodes.h"

using namespace vexor;

namespace {

template <class T>
vexor_expr hand_out(context_wrapper& wrapper, shared_ptr<T> const& node) {
    return handle_of(static_cast<expr*>(wrapper.keep(node)));
}

template <class Operator>
vexor_expr mk_nary(vexor_context ctx, vexor_expr const* args, unsigned n, char const* function) {
    context_wrapper& wrapper = to_wrapper(ctx, function);
    expr_array const exprs(args, n, wrapper.get_manager(), function);
    return hand_out(wrapper,
                    mk<application>(wrapper.get_manager()->mk_name<Operator>(), exprs.data(), n, -1));
}

template <class Operator>
vexor_expr mk_unary(vexor_context ctx, vexor_expr a, char const* function) {
    context_wrapper& wrapper = to_wrapper(ctx, function);
    expr* const op = wrapper.get_manager()->mk_name<Operator>();
    return hand_out(wrapper, mk<application>(op, to_expr(a, wrapper.get_manager(), function), -1));
}

template <class Operator>
vexor_expr mk_binary(vexor_context ctx, vexor_expr a, vexor_expr b, char const* function) {
    context_wrapper& wrapper = to_wrapper(ctx, function);
    expr* const op = wrapper.get_manager()->mk_name<Operator>();
    return hand_out(wrapper, mk<application>(op, to_expr(a, wrapper.get_manager(), function),
                                             to_expr(b, wrapper.get_manager(), function), -1));
}

shared_ptr<numeral_expr> mk_index(context_wrapper& wrapper, unsigned n) {
    return mk<numeral_expr>(wrapper.get_manager(), numeral(n), -1);
}

// An operator of a vector and a count.
template <class Operator>
vexor_expr mk_counted(vexor_context ctx, vexor_expr a, unsigned n, char const* function) {
    context_wrapper& wrapper = to_wrapper(ctx, function);
    expr* const op = wrapper.get_manager()->mk_name<Operator>();
    shared_ptr<numeral_expr> const count = mk_index(wrapper, n);
    return hand_out(wrapper, mk<application>(op, to_expr(a, wrapper.get_manager(), function),
                                             static_cast<expr*>(count.get()), -1));
}

} // namespace

#define VEXOR_MK_NARY(NAME, OPERATOR)                                                                        \
    vexor_expr vexor_mk_##NAME(vexor_context ctx, const vexor_expr args[], unsigned n) {                     \
        return mk_nary<OPERATOR##_decl>(ctx, args, n, __func__);                                             \
    }
#define VEXOR_MK_UNARY(NAME, OPERATOR)                                                                       \
    vexor_expr vexor_mk_##NAME(vexor_context ctx, vexor_expr a) {                                            \
        return mk_unary<OPERATOR##_decl>(ctx, a, __func__);                                                  \
    }
#define VEXOR_MK_BINARY(NAME, OPERATOR)                                                                      \
    vexor_expr vexor_mk_##NAME(vexor_context ctx, vexor_expr a, vexor_expr b) {                              \
        return mk_binary<OPERATOR##_decl>(ctx, a, b, __func__);                                              \
    }
#define VEXOR_MK_COUNTED(NAME)                                                                               \
    vexor_expr vexor_mk_##NAME(vexor_context ctx, vexor_expr a, unsigned n) {                                \
        return mk_counted<NAME##_decl>(ctx, a, n, __func__);                                                 \
    }

extern "C" {

VEXOR_MK_NARY(or, or)
VEXOR_MK_NARY(and, and)
VEXOR_MK_NARY(sum, add)
VEXOR_MK_NARY(sub, sub)
VEXOR_MK_NARY(mul, mul)

VEXOR_MK_UNARY(not, not )
VEXOR_MK_UNARY(bv_minus, bv_minus)
VEXOR_MK_UNARY(bv_not, bv_not)

VEXOR_MK_BINARY(eq, eq)
VEXOR_MK_BINARY(diseq, diseq)
VEXOR_MK_BINARY(lt, lt)
VEXOR_MK_BINARY(le, le)
VEXOR_MK_BINARY(gt, gt)
VEXOR_MK_BINARY(ge, ge)
VEXOR_MK_BINARY(bv_add, bv_add)
VEXOR_MK_BINARY(bv_sub, bv_sub)
VEXOR_MK_BINARY(bv_mul, bv_mul)
VEXOR_MK_BINARY(bv_concat, bv_concat)
VEXOR_MK_BINARY(bv_and, bv_and)
VEXOR_MK_BINARY(bv_or, bv_or)
VEXOR_MK_BINARY(bv_xor, bv_xor)
VEXOR_MK_BINARY(bv_lt, bv_lt)
VEXOR_MK_BINARY(bv_le, bv_le)
VEXOR_MK_BINARY(bv_gt, bv_gt)
VEXOR_MK_BINARY(bv_ge, bv_ge)
VEXOR_MK_BINARY(bv_slt, sbv_lt)
VEXOR_MK_BINARY(bv_sle, sbv_le)
VEXOR_MK_BINARY(bv_sgt, sbv_gt)
VEXOR_MK_BINARY(bv_sge, sbv_ge)

VEXOR_MK_COUNTED(bv_sign_extend)
VEXOR_MK_COUNTED(bv_shift_left0)
VEXOR_MK_COUNTED(bv_shift_left1)
VEXOR_MK_COUNTED(bv_shift_right0)
VEXOR_MK_COUNTED(bv_shift_right1)
VEXOR_MK_COUNTED(bv_shift_righta)

vexor_expr vexor_mk_ite(vexor_context ctx, vexor_expr c, vexor_expr t, vexor_expr e) {
    context_wrapper& wrapper = to_wrapper(ctx);
    ast_manager* const manager = wrapper.get_manager();
    expr* const op = manager->mk_name<ite_decl>();
    return hand_out(wrapper,
                    mk<application>(op, to_expr(c, manager), to_expr(t, manager), to_expr(e, manager), -1));
}

vexor_expr vexor_mk_bv_extract(vexor_context ctx, unsigned high, unsigned low, vexor_expr a) {
    context_wrapper& wrapper = to_wrapper(ctx);
    expr* const op = wrapper.get_manager()->mk_name<bv_extract_decl>();
    shared_ptr<numeral_expr> const first = mk_index(wrapper, high);
    shared_ptr<numeral_expr> const second = mk_index(wrapper, low);
    return hand_out(wrapper,
                    mk<application>(op, static_cast<expr*>(first.get()), static_cast<expr*>(second.get()),
                                    to_expr(a, wrapper.get_manager()), -1));
}

vexor_expr vexor_mk_app(vexor_context ctx, vexor_expr f, const vexor_expr args[], unsigned n) {
    context_wrapper& wrapper = to_wrapper(ctx);
    expr* const fun = to_expr(f, wrapper.get_manager());
    expr_array const exprs(args, n, wrapper.get_manager());
    return hand_out(wrapper, mk<application>(fun, exprs.data(), n, -1));
}

vexor_expr vexor_mk_function_update(vexor_context ctx, vexor_expr f, const vexor_expr args[], unsigned n,
                                    vexor_expr value) {
    context_wrapper& wrapper = to_wrapper(ctx);
    expr* const fun = to_expr(f, wrapper.get_manager());
    expr_array const exprs(args, n, wrapper.get_manager());
    return hand_out(
        wrapper, mk<function_update_expr>(fun, exprs.data(), n, to_expr(value, wrapper.get_manager()), -1));
}

vexor_expr vexor_mk_tuple_literal(vexor_context ctx, const vexor_expr args[], unsigned n) {
    context_wrapper& wrapper = to_wrapper(ctx);
    expr_array const exprs(args, n, wrapper.get_manager());
    return hand_out(wrapper, mk<tuple_literal>(wrapper.get_manager(), exprs.data(), n, -1));
}

} // extern "C"
