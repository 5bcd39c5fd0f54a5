#include "simplify/simplify_or_visitor.h"

#include "ast/node/ast_manager.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

simplify_or_visitor::simplify_or_visitor(simplify_visitor& owner)
    : m_owner(owner)
    , m_first_todo(static_cast<unsigned>(owner.m_or_lists.m_todo.size()))
    , m_first_disjunct(static_cast<unsigned>(owner.m_or_lists.m_disjuncts.size())) {}

simplify_or_visitor::~simplify_or_visitor() {
    m_owner.m_or_lists.m_todo.resize(m_first_todo);
    m_owner.m_or_lists.m_disjuncts.resize(m_first_disjunct);
}

unsigned simplify_or_visitor::size() const {
    return static_cast<unsigned>(m_owner.m_or_lists.m_disjuncts.size()) - m_first_disjunct;
}

simplify_or_visitor::disjunct& simplify_or_visitor::at(unsigned i) const {
    return m_owner.m_or_lists.m_disjuncts[m_first_disjunct + i];
}

void simplify_or_visitor::add(expr* e, bool negated) {
    std::vector<work_item>& todo = m_owner.m_or_lists.m_todo;
    m_root = e;
    todo.push_back({e, nullptr, negated});
    while (todo.size() > m_first_todo && !m_is_true) {
        work_item item = todo.back();
        todo.pop_back();
        walk(item);
    }
    todo.resize(m_first_todo);
}

void simplify_or_visitor::walk(work_item const& item) {
    if (!item.m_term->is_application()) return add_leaf(item);
    application* a = to_app(item.m_term);
    if (is_app_of<not_name_expr>(a) && a->num_args() == 1) {
        m_owner.m_or_lists.m_todo.push_back({a->get_arg(0), item.m_negated ? nullptr : a, !item.m_negated});
    } else if (!open(a, item.m_negated)) {
        add_leaf(item);
    }
}

// (or a ...), (not (and a ...)) and (implies a ... b) are disjunctions of their arguments, some of them
// negated.
bool simplify_or_visitor::open(application* a, bool negated) {
    bool is_implies = is_app_of<implies_name_expr>(a);
    bool is_disjunction = negated ? is_app_of<and_name_expr>(a) : is_implies || is_app_of<or_name_expr>(a);
    if (!is_disjunction) return false;
    if (a != m_root && !a->is_fanout_one()) return false;
    for (unsigned i = a->num_args(); i-- > 0;) {
        bool is_premise = is_implies && i + 1 < a->num_args();
        m_owner.m_or_lists.m_todo.push_back({a->get_arg(i), nullptr, negated != is_premise});
    }
    return true;
}

void simplify_or_visitor::add_leaf(work_item const& item) {
    shared_ptr<expr> image = m_owner.image_of(item.m_term);
    expr* literal = image.get() == item.m_term ? item.m_literal : nullptr;
    add_image(image.get(), item.m_negated, literal);
}

void simplify_or_visitor::add_image(expr* e, bool negated, expr* literal) {
    if (m_is_true) return;
    bool exclusive = e->get_ref_count() < 2;
    expr* atom = e;
    while (is_app_of<not_name_expr>(atom) && to_app(atom)->num_args() == 1) {
        if (literal == nullptr && atom == e && !negated)
            literal = e;
        else
            literal = nullptr;
        atom = to_app(atom)->get_arg(0);
        negated = !negated;
        exclusive &= atom->get_ref_count() < 2;
    }
    if (!negated && is_app_of<or_name_expr>(atom)) {
        application* a = to_app(atom);
        if (a->num_args() <= m_max_copied || (exclusive && a->num_args() <= size())) {
            for (expr* arg : a->get_args()) {
                bool arg_negated = false;
                expr* arg_atom = strip_not(arg, arg_negated);
                add_atom(arg_atom, arg_negated, arg);
            }
            return;
        }
    }
    add_atom(atom, negated, literal);
}

void simplify_or_visitor::add_atom(expr* atom, bool negated, expr* literal) {
    if (m_is_true) return;
    if (vexor::is_true(atom) || is_false(atom)) {
        if (vexor::is_true(atom) != negated) make_true();
        return;
    }
    if (is_known(atom, negated)) return;
    m_owner.m_or_lists.m_disjuncts.push_back({atom, literal, negated});
    if (m_table)
        m_table->insert(atom, size() - 1);
    else if (size() > few)
        make_table();
}

// True when there is nothing to add: the disjunct is there already, or its complement is, which settles all.
bool simplify_or_visitor::is_known(expr* atom, bool negated) {
    disjunct const* known = nullptr;
    if (m_table) {
        if (unsigned const* i = m_table->find(atom)) known = &at(*i);
    } else {
        for (unsigned i = 0; i < size() && known == nullptr; ++i)
            if (same_term(at(i).m_atom.get(), atom)) known = &at(i);
    }
    if (known == nullptr) return false;
    if (known->m_negated != negated) make_true();
    return true;
}

void simplify_or_visitor::make_table() {
    m_table = std::make_unique<index>();
    for (unsigned i = 0; i < size(); ++i) m_table->insert(at(i).m_atom.get(), i);
}

void simplify_or_visitor::make_true() {
    m_is_true = true;
    m_table.reset();
    m_owner.m_or_lists.m_disjuncts.resize(m_first_disjunct);
}

shared_ptr<expr> simplify_or_visitor::to_expr(ast_manager* m, int pos, application* reused) {
    if (m_is_true) return m->mk_true();
    if (size() == 0) return m->mk_false();
    simplify_visitor::image_list literals(m_owner);
    bool same = reused != nullptr && reused->num_args() == size();
    for (unsigned i = 0; i < size(); ++i) {
        disjunct const& d = at(i);
        if (!d.m_negated)
            literals.push_back(d.m_atom.get());
        else if (d.m_literal.get() != nullptr)
            literals.push_back(d.m_literal.get());
        else
            literals.push_back(mk_not(d.m_atom.get()).get());
        same = same && literals[i] == reused->get_arg(i);
    }
    if (size() == 1) return literals[0];
    if (same) return reused;
    return mk<application>(m->mk_name<or_decl>(), literals.data(), literals.size(), pos);
}

} // namespace vexor
