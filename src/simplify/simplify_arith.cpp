// Where arithmetic leaves the simplifier.
#include "ast/node/ast_manager.h"
#include "simplify/simplify_arith_visitor.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

void simplify_visitor::simplify_arith(application* a, bool is_predicate) {
    m_result = simplify_arith_visitor(this)(a, is_predicate).get();
}

void simplify_visitor::visit(le_name_expr*, application* a) { simplify_arith(a, true); }
void simplify_visitor::visit(lt_name_expr*, application* a) { simplify_arith(a, true); }
void simplify_visitor::visit(ge_name_expr*, application* a) { simplify_arith(a, true); }
void simplify_visitor::visit(gt_name_expr*, application* a) { simplify_arith(a, true); }
void simplify_visitor::visit(add_name_expr*, application* a) { simplify_arith(a, false); }
void simplify_visitor::visit(sub_name_expr*, application* a) { simplify_arith(a, false); }
void simplify_visitor::visit(mul_name_expr*, application* a) { simplify_arith(a, false); }
void simplify_visitor::visit(div_name_expr*, application* a) { simplify_arith(a, false); }

// Membership in int is known for terms of an integer type and for numbers.
void simplify_visitor::visit(int_pred_name_expr*, application* a) {
    ast_manager* m = a->get_manager();
    process_app(a);
    expr* arg = to_app(static_cast<expr*>(m_result.get()))->get_arg(0);
    if (is_a<numeral_expr>(arg))
        m_result = static_cast<numeral_expr*>(arg)->get_value().is_int() ? m->mk_true() : m->mk_false();
    else if (arg->is_int())
        m_result = m->mk_true();
}

// Every number is real.
void simplify_visitor::visit(real_pred_name_expr*, application* a) { m_result = a->get_manager()->mk_true(); }

} // namespace vexor
