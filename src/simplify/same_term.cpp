#include "simplify/same_term.h"

namespace vexor {

namespace {

enum class similarity { same, different, unknown };

constexpr unsigned compared_nodes = 64; // pairs looked at before the answer is unknown
constexpr unsigned hashed_levels = 3;   // of an open term

similarity decided(bool same) { return same ? similarity::same : similarity::different; }

similarity compare(expr* a, expr* b, unsigned& budget);

similarity compare_all(child_array<expr> const& a, child_array<expr> const& b, unsigned& budget) {
    if (a.size() != b.size()) return similarity::different;
    similarity result = similarity::same;
    for (unsigned i = 0; i < a.size(); ++i) {
        similarity s = compare(a[i], b[i], budget);
        if (s == similarity::different) return s;
        if (s == similarity::unknown) result = s;
    }
    return result;
}

similarity compare_applications(application* a, application* b, unsigned& budget) {
    if (a->num_args() != b->num_args()) return similarity::different;
    similarity fun = compare(a->get_fun(), b->get_fun(), budget);
    if (fun == similarity::different) return fun;
    similarity args = compare_all(a->get_args(), b->get_args(), budget);
    return args == similarity::same ? fun : args;
}

similarity compare_constants(expr* a, expr* b) {
    if (is_a<numeral_expr>(a))
        return decided(static_cast<numeral_expr*>(a)->get_value() ==
                       static_cast<numeral_expr*>(b)->get_value());
    if (is_a<bitvector_constant>(a)) {
        auto* c = static_cast<bitvector_constant*>(a);
        auto* d = static_cast<bitvector_constant*>(b);
        return decided(c->get_size() == d->get_size() && c->get_value() == d->get_value());
    }
    return similarity::unknown;
}

// Recursion is bounded by the budget.
similarity compare(expr* a, expr* b, unsigned& budget) {
    if (a == b) return similarity::same;
    if (a->get_cls_name() != b->get_cls_name()) return similarity::different;
    if (a->is_name_expr())
        return decided(static_cast<name_expr*>(a)->get_decl() == static_cast<name_expr*>(b)->get_decl());
    if (budget == 0) return similarity::unknown;
    --budget;
    if (a->is_application()) return compare_applications(to_app(a), to_app(b), budget);
    if (is_a<tuple_selection>(a)) {
        auto* s = static_cast<tuple_selection*>(a);
        auto* t = static_cast<tuple_selection*>(b);
        if (s->get_idx() != t->get_idx()) return similarity::different;
        return compare(s->get_tuple(), t->get_tuple(), budget);
    }
    if (is_a<record_selection>(a)) {
        auto* s = static_cast<record_selection*>(a);
        auto* t = static_cast<record_selection*>(b);
        if (!(s->get_name() == t->get_name())) return similarity::different;
        return compare(s->get_record(), t->get_record(), budget);
    }
    return compare_constants(a, b);
}

std::size_t pointer_hash(void const* p) { return reinterpret_cast<std::size_t>(p) >> 3; }

std::size_t open_hash(expr* e, unsigned levels) {
    if (e->is_name_expr()) return pointer_hash(static_cast<name_expr*>(e)->get_decl());
    std::size_t h = pointer_hash(e->get_cls_name());
    if (levels == 0) return h;
    if (e->is_application()) {
        auto* a = to_app(e);
        h = h * 31 + open_hash(a->get_fun(), levels - 1);
        unsigned n = a->num_args() < 8 ? a->num_args() : 8;
        for (unsigned i = 0; i < n; ++i) h = h * 31 + open_hash(a->get_arg(i), levels - 1);
        return h * 31 + a->num_args();
    }
    if (is_a<numeral_expr>(e)) return h * 31 + static_cast<numeral_expr*>(e)->get_value().hash();
    if (is_a<bitvector_constant>(e)) return h * 31 + static_cast<bitvector_constant*>(e)->get_value().hash();
    if (is_a<tuple_selection>(e)) {
        auto* s = static_cast<tuple_selection*>(e);
        return h * 31 + s->get_idx() + 7 * open_hash(s->get_tuple(), levels - 1);
    }
    return h;
}

} // namespace

bool same_term(expr* a, expr* b) {
    unsigned budget = compared_nodes;
    similarity s = compare(a, b, budget);
    if (s != similarity::unknown) return s == similarity::same;
    if (a->has_free_vars() || b->has_free_vars()) return false;
    return a->hash() == b->hash() && a->equals(b);
}

unsigned term_hash(expr* e) {
    if (!e->has_free_vars()) return e->hash();
    return static_cast<unsigned>(open_hash(e, hashed_levels));
}

} // namespace vexor
