// Taking trees of associative operators apart, and putting them together in a fixed order.
#pragma once

#include "ast/node/ast_manager.h"
#include "simplify/bv_rewriter.h"
#include "simplify/same_term.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

// The images of the leaves of a source term, kept alive by a list of the owner.
//
// Nodes with several parents are simplified once, and the operators in an image are taken apart only while
// they are few; so terms that double at each step, x + x, stay linear.
class bv_flattened {
public:
    static constexpr unsigned max_copied = 32;

    bv_flattened(simplify_visitor& owner, application* root, bv_family family);
    bv_leaves const& get_leaves() const { return m_leaves; }

private:
    struct item {
        bv_leaf m_leaf;
        bool m_is_image;
    };
    void add_image(expr* e, bool flag);
    bool is_small(expr* e) const;
    void push_children(bv_leaves const& children, bool are_images);

    bv_family m_family;
    unsigned m_width;                      // of all leaves
    std::vector<item> m_todo;              // still to be taken apart, the next one last
    bv_leaves m_leaves;                    // from left to right
    simplify_visitor::image_list m_images; // keeps the leaves
};

// The application of the operator with declaration D; b when there is no a.
template <class D>
shared_ptr<expr> mk_binary_app(expr* a, expr* b) {
    if (a == nullptr) return b;
    return mk<application>(a->get_manager()->template mk_name<D>(), a, b, -1);
}

// How often each term occurs, up to equality; terms are listed in a fixed order.
class bv_term_counts {
public:
    long& operator[](expr* e);
    // The terms whose count is not 0, with their counts: names in the order of their declaration, then other
    // terms by their structure.
    struct entry {
        expr* m_term;
        long m_count;
    };
    std::vector<entry> sorted() const;

private:
    hash_map<expr*, unsigned, term_hasher, term_equality> m_places; // in m_entries
    std::vector<entry> m_entries;                                   // in the order of their coming
};

} // namespace vexor
