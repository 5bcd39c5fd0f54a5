// One disjunction under construction: takes connectives apart and gathers their disjuncts.
//
// `or`, `and` and `implies` are all disjunctions seen from one side: a conjunction is the negation of one.
// The walk goes through connectives with a sign and gives what it does not go through to the simplifier.
//
// The disjuncts of an image, which other terms may hold too, are copied only while they are few or no more
// than are there already: copying them all would take quadratic time and space on x2 = x1 or a2, x3 = x2 or
// a3, ... A longer one is a disjunct of its own.
//
// Keeps:   no disjunct twice, none beside its complement, no constants; true as soon as one is.
// Cost:    O(1) comparisons per disjunct (a table from eight on), amortized O(max_copied) disjuncts per
// image. Source:  own.
#pragma once

#include "ast/node/nodes.h"
#include "base/hash_table.h"
#include "simplify/same_term.h"

#include <memory>
#include <vector>

namespace vexor {

class simplify_visitor;

class simplify_or_visitor {
    struct work_item {
        expr* m_term;
        expr* m_literal; // an existing node for the term with its sign, or null
        bool m_negated;  // stands under an odd number of negations
    };
    struct disjunct {
        shared_ptr<expr> m_atom;    // without negations
        shared_ptr<expr> m_literal; // an existing node for the atom with its sign, or null
        bool m_negated;
    };

public:
    // Disjuncts of an image that are always copied.
    static constexpr unsigned max_copied = 64;

    // Memory for all connectives that are being simplified, one inside of the other.
    struct work_lists {
        std::vector<work_item> m_todo;
        std::vector<disjunct> m_disjuncts;
    };

    explicit simplify_or_visitor(simplify_visitor& owner);
    simplify_or_visitor(simplify_or_visitor const&) = delete; // owns the ends of the work lists
    simplify_or_visitor& operator=(simplify_or_visitor const&) = delete;
    ~simplify_or_visitor();

    // Adds the disjuncts of a source term, or of its negation.
    void add(expr* e, bool negated);
    // The same for an image. literal: an existing node for it with the sign, or null.
    void add_image(expr* e, bool negated, expr* literal = nullptr);
    // Another limit than max_copied, for callers who know that there is no chain of such images.
    void set_max_copied(unsigned n) { m_max_copied = n; }
    bool is_true() const { return m_is_true; }
    // Number of disjuncts, 0 when the whole is true.
    unsigned size() const;
    // The disjunction; reused if it has the same disjuncts in the same order, else a new node at position
    // pos.
    shared_ptr<expr> to_expr(ast_manager* m, int pos, application* reused = nullptr);

private:
    void walk(work_item const& item);
    bool open(application* a, bool negated);
    void add_leaf(work_item const& item);
    void add_atom(expr* atom, bool negated, expr* literal);
    bool is_known(expr* atom, bool negated);
    void make_table();
    disjunct& at(unsigned i) const;
    void make_true();

    // A table is worth its memory from here on.
    static constexpr unsigned few = 8;
    using index = hash_map<expr*, unsigned, term_hasher, term_equality>;

    simplify_visitor& m_owner;
    expr* m_root = nullptr;             // the term given to add, taken apart even if it is shared
    unsigned m_first_todo;              // where the own part of the work list begins
    unsigned m_first_disjunct;          // where the own part of the disjuncts begins
    unsigned m_max_copied = max_copied; // see set_max_copied
    bool m_is_true = false;             // nothing more matters
    std::unique_ptr<index> m_table;     // place of each atom once there are many
};

} // namespace vexor
