#include "simplify/hash_consing_visitor.h"

#include "base/deep_stack.h"

namespace vexor {

namespace {

// Addresses of nodes differ by multiples of their size: without mixing, sums of them collide all the time.
std::size_t mix(std::size_t h, std::size_t more) {
    h = (h ^ more) * 0x9e3779b97f4a7c15u;
    return h ^ (h >> 29);
}

std::size_t address(void const* p) { return reinterpret_cast<std::size_t>(p); }

// Uses of one declaration are interchangeable. They are told apart by nothing but their declaration, so that
// they need no place in the table, which costs more than all the rest.
void const* identity_of(expr* e) {
    return e->is_name_expr() ? static_cast<void const*>(static_cast<name_expr*>(e)->get_decl()) : e;
}

bool same_children(child_array<expr> const& a, child_array<expr> const& b) {
    if (a.size() != b.size()) return false;
    for (unsigned i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && identity_of(a[i]) != identity_of(b[i])) return false;
    return true;
}

} // namespace

std::size_t hash_consing_visitor::node_hash::operator()(expr* e) const {
    if (e->is_application()) {
        auto* a = to_app(e);
        std::size_t h = mix(2, address(identity_of(a->get_fun())));
        for (expr* arg : a->get_args()) h = mix(h, address(identity_of(arg)));
        return h;
    }
    if (is_a<numeral_expr>(e)) return static_cast<numeral_expr*>(e)->get_value().hash();
    VEXOR_ASSERT(is_a<bitvector_constant>(e));
    auto* c = static_cast<bitvector_constant*>(e);
    return mix(c->get_value().hash(), c->get_size());
}

bool hash_consing_visitor::node_equality::operator()(expr* a, expr* b) const {
    if (a->get_cls_name() != b->get_cls_name()) return false;
    if (a->is_application())
        return identity_of(to_app(a)->get_fun()) == identity_of(to_app(b)->get_fun()) &&
               same_children(to_app(a)->get_args(), to_app(b)->get_args());
    if (is_a<numeral_expr>(a))
        return static_cast<numeral_expr*>(a)->get_value() == static_cast<numeral_expr*>(b)->get_value();
    auto* c = static_cast<bitvector_constant*>(a);
    auto* d = static_cast<bitvector_constant*>(b);
    return c->get_size() == d->get_size() && c->get_value() == d->get_value();
}

shared_ptr<ast> hash_consing_visitor::accept_core(ast* a) {
    if (a == nullptr) return nullptr;
    if (a->is_expr() && static_cast<expr*>(a)->is_name_expr()) {
        m_result = a;
        return m_result;
    }
    map_visitor::accept_core(a);
    if (apply_hash_consing(m_result)) {
        auto* e = static_cast<expr*>(m_result.get());
        if (expr* const* known = m_nodes.find(e)) {
            m_result = *known;
        } else {
            m_nodes.insert(e);
            m_members.push_back(e);
        }
    }
    return m_result;
}

void hash_consing_visitor::visit(expr* fun, application* a) {
    unsigned base = m_args.size();
    bool changed = false;
    for (expr* arg : a->get_args()) {
        if (arg->is_name_expr()) {
            m_args.push_back(arg);
            continue;
        }
        accept_core(arg);
        changed |= m_result.get() != arg;
        m_args.push_back(static_cast<expr*>(m_result.get()));
    }
    expr* image = fun;
    if (!fun->is_name_expr()) {
        accept_core(fun);
        image = static_cast<expr*>(m_result.get());
    }
    shared_ptr<expr> held(image);
    if (changed || image != fun)
        m_result = a->clone(image, m_args.data() + base, m_args.size() - base);
    else
        m_result = a;
    m_args.shrink(base);
}

void hash_consing_visitor::reset() {
    map_visitor::reset();
    m_args.reset();
    m_nodes.reset();
    m_members.reset();
}

bool or_ite_bv_hash_consing_visitor::apply_hash_consing(ast* a) const {
    if (!a->is_expr()) return false;
    auto* e = static_cast<expr*>(a);
    return e->is_application() || is_a<bitvector_constant>(e) || is_a<numeral_expr>(e);
}

} // namespace vexor
