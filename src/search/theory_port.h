// What a theory may do to the search.
#pragma once

#include "base/arena.h"
#include "base/vector.h"
#include "search/explanation.h"
#include "search/frozen_reason.h"
#include "search/literal.h"
#include "search/theory_atom.h"
#include "search/trail_object.h"

#include <cstdint>
#include <new>

namespace vexor {

class ast_manager;
class context;
class random_numbers;
class var_decl;

// The search as the congruence closure and the theories see it. This is the only header of the search, with
// what it includes, that stands below them.
//
// Nothing here reports by exception or by result unless it says so: after what may contradict, inconsistent()
// tells. The first conflict is kept, later ones are ignored.
//
// Scopes. scope_lvl counts all open scopes: those of the user up to base_lvl, then those of assumptions, then
// those of decisions. What is recorded by push_undo or lies in scope_arena goes with the present scope.
// Variables, clauses, atoms and gates go with the user scope, wherever in the search they are made.
class theory_port {
public:
    explicit theory_port(context& ctx);
    theory_port(theory_port const&) = delete; // there is one
    theory_port& operator=(theory_port const&) = delete;

    // --- Variables and gates.

    // A new variable for a, which stays the caller's. The owner's init_atom is called before this returns, with
    // the variable set. The result is the positive literal.
    literal new_atom(theory_atom& a);
    // The atom behind a variable, null for none.
    [[nodiscard]] theory_atom* atom_of(int var) const;
    // A new variable without definition.
    literal new_literal();
    // The variable of a Boolean declaration, made at the first request.
    literal literal_of(var_decl* d);
    // Gates; one for equal arguments. Constants and complements among the arguments are simplified, also by
    // values of the base level.
    literal mk_or(svector<literal> const& lits);
    literal mk_or(literal a, literal b);
    literal mk_and(literal a, literal b) { return ~mk_or(~a, ~b); }
    literal mk_iff(literal a, literal b);
    literal mk_xor(literal a, literal b) { return ~mk_iff(a, b); }
    literal mk_ite(literal c, literal t, literal e);

    // --- Clauses.

    // A fact that holds in the whole user scope, wherever the search stands.
    void axiom(literal l);
    // A clause that holds in the whole user scope and stays: the definition of something new.
    void axiom(svector<literal> const& lits);
    void axiom(literal a, literal b);
    void axiom(literal a, literal b, literal c);
    // A consequence of what is asserted and of the theories, which the search may forget like a learned clause.
    void lemma(svector<literal> const& lits);

    // --- Assignment.

    // 1 true, -1 false, 0 unassigned.
    [[nodiscard]] int value(literal l) const { return m_assignment[static_cast<unsigned>(l.index())]; }
    [[nodiscard]] bool is_true(literal l) const { return value(l) > 0; }
    [[nodiscard]] bool is_false(literal l) const { return value(l) < 0; }
    // An assigned literal that holds in the whole user scope: reasons may leave it out.
    [[nodiscard]] bool is_base_fact(literal l) const;
    // When l was assigned: a reason's literals have smaller numbers than what they imply. Meaningless while
    // unassigned; facts of the base level have the numbers of the base.
    [[nodiscard]] std::int64_t timestamp(literal l) const;
    // Gives l the value true, because of why; nothing if it is true. False if it was false: the conflict is set.
    bool assign(literal l, explanation* why);
    bool assign(literal l, reason_kind const& kind, svector<literal> const& why) {
        if (value(l) > 0) return true;
        return assign(l, mk_reason(kind, why));
    }
    // The antecedents of why, asked with false_literal, cannot hold together. They are true now.
    void conflict(explanation* why);
    void conflict(reason_kind const& kind, svector<literal> const& why) { conflict(mk_reason(kind, why)); }
    // A reason that lists its literals, in the arena of the scope; counted by its kind.
    explanation* mk_reason(reason_kind const& kind, svector<literal> const& why) {
        return mk_reason(kind, why.data(), why.size());
    }
    explanation* mk_reason(reason_kind const& kind, literal const* why, unsigned n);
    [[nodiscard]] bool inconsistent() const;

    // --- Scopes.

    [[nodiscard]] unsigned scope_lvl() const { return m_scope_lvl; }
    [[nodiscard]] unsigned base_lvl() const { return m_base_lvl; }
    [[nodiscard]] bool at_base() const { return m_scope_lvl == m_base_lvl; }
    // Memory that goes with the present scope. Destructors do not run.
    [[nodiscard]] arena& scope_arena() { return m_region; }
    // Remembers an undo record, of a class derived from trail_object, for the present scope. At scope 0
    // nothing is ever undone and nothing is recorded.
    template <typename T>
    void push_undo(T const& record) {
        if (m_scope_lvl == 0) return;
        push_trail_record(new (m_region.allocate(sizeof(T))) T(record));
    }

    // --- The question.

    // False when every loop must leave: a stop or a type error.
    [[nodiscard]] bool keep_searching() const;
    // An answer "satisfiable" would only be "unknown", because of reason, a static text. Goes with the present
    // scope, and at base level with the user scope.
    void set_incomplete(char const* reason);
    // The formula makes no sense; all loops end, and the answer is "unknown" until the user scope is closed.
    void type_error(char const* text);
    [[nodiscard]] random_numbers& random();
    [[nodiscard]] std::uint64_t num_conflicts() const;
    [[nodiscard]] ast_manager* get_manager() const;
    // For conditions of explanations and traces.
    void display(std::ostream& out, literal l) const;

private:
    void push_trail_record(trail_object* record);

    context& m_context;
    svector<signed char> const& m_assignment; // of the context
    unsigned const& m_scope_lvl;              // likewise
    unsigned const& m_base_lvl;               // likewise
    scoped_arena& m_region;                   // likewise
};

} // namespace vexor
