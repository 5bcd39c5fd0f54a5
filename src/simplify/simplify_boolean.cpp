// Boolean structure, if-then-else and equality.
#include "ast/node/ast_manager.h"
#include "ast/types/type_checker_exception.h"
#include "simplify/bv_rewriter.h"
#include "simplify/simplify_arith_visitor.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

shared_ptr<expr> mk_not(expr* e) {
    ast_manager* m = e->get_manager();
    if (is_true(e)) return m->mk_false();
    if (is_false(e)) return m->mk_true();
    if (is_app_of<not_name_expr>(e) && to_app(e)->num_args() == 1) return to_app(e)->get_arg(0);
    return mk<application>(m->mk_name<not_decl>(), e, e->get_pos());
}

void simplify_visitor::visit(or_name_expr*, application* a) { simplify_or(a, false); }
void simplify_visitor::visit(implies_name_expr*, application* a) { simplify_or(a, false); }
void simplify_visitor::visit(and_name_expr*, application* a) { simplify_or(a, true); }

void simplify_visitor::simplify_or(application* a, bool negated_outside) {
    simplify_or_visitor all(*this);
    all.add(a, negated_outside);
    application* reused = is_app_of<or_name_expr>(a) ? a : nullptr;
    shared_ptr<expr> result = all.to_expr(a->get_manager(), a->get_pos(), reused);
    if (negated_outside) result = mk_not(result.get());
    m_result = result.get();
}

shared_ptr<expr> simplify_visitor::create_or(expr* a, expr* b) {
    simplify_or_visitor all(*this);
    all.add_image(a, false);
    all.add_image(b, false);
    return all.to_expr(a->get_manager(), -1);
}

shared_ptr<expr> simplify_visitor::create_and(expr* a, expr* b) {
    simplify_or_visitor all(*this);
    all.add_image(a, true);
    all.add_image(b, true);
    return mk_not(all.to_expr(a->get_manager(), -1).get());
}

void simplify_visitor::visit(not_name_expr*, application* a) {
    if (a->num_args() != 1) return process_app(a);
    bool negated = true;
    expr* inner = strip_not(a->get_arg(0), negated);
    shared_ptr<expr> image = image_of(inner);
    if (negated && image.get() == a->get_arg(0) && !is_true(inner) && !is_false(inner))
        keep(a);
    else
        m_result = negated ? mk_not(image.get()).get() : image.get();
}

// The branch that a constant condition excludes is not looked at: it may not even terminate.
void simplify_visitor::visit(ite_name_expr*, application* a) {
    if (a->num_args() != 3) return process_app(a);
    shared_ptr<expr> c = image_of(a->get_arg(0));
    if (is_true(c.get())) {
        accept_core(a->get_arg(1));
        return;
    }
    if (is_false(c.get())) {
        accept_core(a->get_arg(2));
        return;
    }
    shared_ptr<expr> t = image_of(a->get_arg(1));
    shared_ptr<expr> e = image_of(a->get_arg(2));
    shared_ptr<expr> result = create_ite(c.get(), t.get(), e.get());
    // The node itself is kept where create_ite only builds it again.
    if (is_app_of<ite_name_expr>(result.get())) {
        application* r = to_app(result.get());
        if (r->get_arg(0) == a->get_arg(0) && r->get_arg(1) == a->get_arg(1) &&
            r->get_arg(2) == a->get_arg(2))
            return keep(a);
    }
    m_result = result.get();
}

shared_ptr<expr> simplify_visitor::create_ite(expr* c, expr* t, expr* e) {
    if (is_true(c) || same_term(t, e)) return t;
    if (is_false(c)) return e;
    if (is_true(t)) return create_or(c, e);
    if (is_false(e)) return create_and(c, t);
    if (is_false(t)) return create_and(mk_not(c).get(), e);
    if (is_true(e)) return create_or(mk_not(c).get(), t);
    ast_manager* m = c->get_manager();
    bool negated = false;
    expr* positive = strip_not(c, negated);
    if (negated) return mk<application>(m->mk_name<ite_decl>(), positive, e, t, -1);
    return mk<application>(m->mk_name<ite_decl>(), c, t, e, -1);
}

namespace {

// Values whose equality is that of their declarations or numbers.
bool is_value(expr* e) {
    return e->is_scalar() || is_a<constructor_name_expr>(e) || is_a<recognizer_name_expr>(e) ||
           is_a<bitvector_constant>(e) || is_a<typed_constant>(e);
}

// A malformed term has no type; it is somebody else's to report.
bool is_number(expr* e) {
    try {
        return e->is_numeral();
    } catch (type_checker_exception const&) {
        return false;
    }
}

bool is_scalar_or_same_class(expr* a, expr* b) {
    return (a->is_scalar() && b->is_scalar()) || a->get_cls_name() == b->get_cls_name();
}

} // namespace

// Two accessors are different declarations, but the same function where the type that they select has a
// single element; so their equality is not decided here.
shared_ptr<expr> simplify_visitor::create_eq(expr* a, expr* b) {
    ast_manager* m = a->get_manager();
    if (same_term(a, b)) return m->mk_true();
    if (is_value(a) && is_value(b) && is_scalar_or_same_class(a, b)) return m->mk_false();
    if (is_true(a)) return b;
    if (is_false(a)) return mk_not(b);
    if (is_true(b)) return a;
    if (is_false(b)) return mk_not(a);
    if (is_number(a)) return simplify_arith_visitor(this).create_eq(a, b);
    unsigned width = bv_rewriter::width_of(a);
    if (width > 0 && width == bv_rewriter::width_of(b)) return bv_rewriter(*this).mk_eq(a, b);
    return mk<application>(m->mk_name<eq_decl>(), a, b, -1);
}

void simplify_visitor::visit(eq_name_expr*, application* a) {
    if (a->num_args() != 2) return process_app(a);
    if (is_number(a->get_arg(0))) {
        m_result = simplify_arith_visitor(this)(a, true).get();
        return;
    }
    image_list args(*this, a->get_args());
    shared_ptr<expr> result = create_eq(args[0], args[1]);
    bool unchanged = !args.differs_from(a->get_args()) && is_app_of<eq_name_expr>(result.get()) &&
                     to_app(result.get())->get_arg(0) == args[0] &&
                     to_app(result.get())->get_arg(1) == args[1];
    m_result = unchanged ? a : result.get();
}

void simplify_visitor::visit(diseq_name_expr* fun, application* a) {
    if (a->num_args() != 2) return process_app(a);
    shared_ptr<expr> equality =
        mk<application>(fun->get_manager()->mk_name<eq_decl>(), a->get_arg(0), a->get_arg(1), a->get_pos());
    shared_ptr<expr> image = image_of(equality.get());
    m_result = mk_not(image.get()).get();
}

} // namespace vexor
