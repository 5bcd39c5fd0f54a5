#include "ast/visit/disjunction.h"

#include "ast/node/ast_manager.h"

namespace vexor {

namespace {

// e without its outer negations; negated tells whether their number is odd.
expr* strip_not(expr* e, bool& negated) {
    negated = false;
    while (is_app_of<not_name_expr>(e) && to_app(e)->num_args() == 1) {
        e = to_app(e)->get_arg(0);
        negated = !negated;
    }
    return e;
}

} // namespace

// A work list instead of recursion: disjunctions nest as deep as the input likes.
void disjunction::insert(expr* e) {
    ptr_vector<expr> todo;
    todo.push_back(e);
    while (!todo.empty() && !m_is_true) {
        expr* current = todo.back();
        todo.pop_back();
        if (!is_app_of<or_name_expr>(current)) {
            insert_leaf(current);
        } else if (current->get_ref_count() < 2 || m_opened.insert(current)) {
            application* a = to_app(current);
            for (unsigned i = a->num_args(); i-- > 0;) todo.push_back(a->get_arg(i));
        }
    }
}

void disjunction::insert_leaf(expr* e) {
    bool negated;
    expr* atom = strip_not(e, negated);
    if (vexor::is_true(atom) || is_false(atom)) {
        m_is_true = vexor::is_true(atom) != negated;
    } else if (bool const* known = m_negated.find(atom)) {
        m_is_true = *known != negated;
    } else {
        m_negated.insert(atom, negated);
        m_disjuncts.push_back(e);
    }
    if (m_is_true) {
        m_negated.reset();
        m_opened.reset();
        m_disjuncts.reset();
    }
}

shared_ptr<expr> disjunction::to_expr(ast_manager* m, int pos) const {
    if (m_is_true) return m->mk_true();
    if (m_disjuncts.empty()) return m->mk_false();
    if (m_disjuncts.size() == 1) return m_disjuncts[0];
    return mk<application>(m->mk_name<or_decl>(), m_disjuncts.data(), m_disjuncts.size(), pos);
}

void disjunction::reset() {
    m_negated.reset();
    m_opened.reset();
    m_disjuncts.reset();
    m_is_true = false;
}

namespace {

enum class relation { unrelated, same, complement };

relation compare(expr* a, expr* b) {
    bool a_negated, b_negated;
    a = strip_not(a, a_negated);
    b = strip_not(b, b_negated);
    if (a != b && (a->hash() != b->hash() || !a->equals(b))) return relation::unrelated;
    return a_negated == b_negated ? relation::same : relation::complement;
}

void make_true(ptr_vector<expr>& args, ast_manager* m, shared_ptr_vector<ast>& keep) {
    expr* t = or_eq_true_case(m, args, keep);
    args.push_back(t);
}

void insert_leaf(ptr_vector<expr>& args, expr* e, shared_ptr_vector<ast>& keep) {
    bool negated;
    expr* atom = strip_not(e, negated);
    if (is_true(atom) || is_false(atom)) {
        if (is_true(atom) != negated) make_true(args, e->get_manager(), keep);
        return;
    }
    for (expr* a : args) {
        relation r = compare(a, e);
        if (r == relation::same) return;
        if (r == relation::complement) return make_true(args, e->get_manager(), keep);
    }
    args.push_back(e);
}

} // namespace

void insert_disjunct(ptr_vector<expr>& args, expr* e, shared_ptr_vector<ast>& keep) {
    if (args.size() == 1 && is_true(args[0])) return;
    if (!is_app_of<or_name_expr>(e)) return insert_leaf(args, e, keep);
    disjunction all;
    for (expr* a : args) all.insert(a);
    all.insert(e);
    if (all.is_true()) return make_true(args, e->get_manager(), keep);
    for (expr* a : args) keep.push_back(a);
    args.reset();
    for (expr* a : all.get_disjuncts()) args.push_back(a);
}

expr* or_eq_true_case(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep) {
    for (expr* e : args) keep.push_back(e);
    args.reset();
    return m->mk_true();
}

shared_ptr<expr> create_or(ast_manager* m, ptr_vector<expr>& args, shared_ptr_vector<ast>& keep) {
    unsigned kept = 0;
    for (unsigned i = 0; i < args.size(); ++i) {
        if (is_true(args[i])) return or_eq_true_case(m, args, keep);
        if (!is_false(args[i])) args[kept++] = args[i];
    }
    args.shrink(kept);
    if (kept == 0) return m->mk_false();
    if (kept == 1) return args[0];
    return mk<application>(m->mk_name<or_decl>(), args.data(), kept, -1);
}

} // namespace vexor
