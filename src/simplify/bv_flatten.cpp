#include "simplify/bv_flatten.h"

#include <algorithm>

namespace vexor {

bv_flattened::bv_flattened(simplify_visitor& owner, application* root, bv_family family)
    : m_family(family)
    , m_width(bv_rewriter::width_of(root->get_arg(0)))
    , m_images(owner) {
    m_todo.push_back({{root, false}, false});
    bv_leaves children;
    while (!m_todo.empty()) {
        item i = m_todo.back();
        m_todo.pop_back();
        expr* e = i.m_leaf.m_term;
        children.clear();
        bool opens = e->is_application() && m_family(to_app(e), i.m_leaf.m_flag, children);
        if (i.m_is_image) {
            if (opens)
                push_children(children, true);
            else
                m_leaves.push_back(i.m_leaf);
        } else if (opens && (e == root || e->is_fanout_one()) &&
                   bv_rewriter::is_well_formed(to_app(e), to_app(e)->num_args())) {
            push_children(children, false);
        } else {
            shared_ptr<expr> image = owner.image_of(e);
            add_image(image.get(), i.m_leaf.m_flag);
        }
    }
}

void bv_flattened::push_children(bv_leaves const& children, bool are_images) {
    for (std::size_t i = children.size(); i-- > 0;) m_todo.push_back({children[i], are_images});
}

void bv_flattened::add_image(expr* e, bool flag) {
    m_images.push_back(e);
    bv_leaves children;
    if (e->is_application() && m_family(to_app(e), flag, children) && is_small(e))
        push_children(children, true);
    else
        m_leaves.push_back({e, flag});
}

bool bv_flattened::is_small(expr* e) const {
    bv_leaves todo{{e, false}};
    unsigned num_leaves = 0;
    while (!todo.empty()) {
        expr* current = todo.back().m_term;
        todo.pop_back();
        if (!current->is_application() || !m_family(to_app(current), false, todo)) ++num_leaves;
        if (num_leaves + todo.size() > max_copied) return false;
    }
    return true;
}

long& bv_term_counts::operator[](expr* e) {
    if (unsigned const* place = m_places.find(e)) return m_entries[*place].m_count;
    m_places.insert(e, static_cast<unsigned>(m_entries.size()));
    m_entries.push_back({e, 0});
    return m_entries.back().m_count;
}

namespace {

constexpr unsigned key_length = 16;

// The first nodes of a term from left to right: the same in each run, unlike addresses.
void append_key(expr* e, std::vector<unsigned>& key) {
    if (key.size() >= key_length) return;
    if (e->is_name_expr()) {
        key.push_back(0);
        key.push_back(static_cast<name_expr*>(e)->get_decl()->get_id());
    } else if (is_a<numeral_expr>(e)) {
        key.push_back(1);
        key.push_back(static_cast<numeral_expr*>(e)->get_value().hash());
    } else if (is_bv_constant(e)) {
        key.push_back(2);
        key.push_back(bv_value(e).hash());
    } else if (e->is_application()) {
        key.push_back(3);
        append_key(to_app(e)->get_fun(), key);
        for (expr* arg : to_app(e)->get_args()) append_key(arg, key);
    } else {
        key.push_back(4);
    }
}

struct keyed_entry {
    std::vector<unsigned> m_key;
    bv_term_counts::entry m_entry;

    bool operator<(keyed_entry const& other) const {
        if (m_key != other.m_key) return m_key < other.m_key;
        return m_entry.m_term->get_id() < other.m_entry.m_term->get_id();
    }
};

} // namespace

std::vector<bv_term_counts::entry> bv_term_counts::sorted() const {
    std::vector<keyed_entry> keyed;
    for (entry const& e : m_entries) {
        if (e.m_count == 0) continue;
        keyed.push_back({{}, e});
        append_key(e.m_term, keyed.back().m_key);
    }
    std::sort(keyed.begin(), keyed.end());
    std::vector<entry> result;
    for (keyed_entry const& e : keyed) result.push_back(e.m_entry);
    return result;
}

} // namespace vexor
