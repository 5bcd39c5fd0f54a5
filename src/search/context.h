// The solver's hub: Boolean variables, clauses, assignment, trail and scopes, and the search over them.
#pragma once

#include "ast/node/ast_fwd.h"
#include "base/arena.h"
#include "base/bitvector.h"
#include "base/heap.h"
#include "base/numeral.h"
#include "base/shared_ptr.h"
#include "base/vector.h"
#include "search/bool_var_body.h"
#include "search/clause.h"
#include "search/clause_store.h"
#include "search/def_table.h"
#include "search/explanation.h"
#include "search/gexplanation.h"
#include "search/literal.h"
#include "search/model.h"
#include "search/random_numbers.h"
#include "search/scopes.h"
#include "search/statistics.h"
#include "search/theory_hub.h"
#include "search/trail_object.h"
#include "search/watch_set.h"
#include "search/weighted_vars.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <new>
#include <string>

namespace vexor {

class internalizer;
class restart_schedule;

// One solver instance, used by one thread at a time.
//
// Build: create variables and clauses (or, later, assert formulas) at the base level. Ask: check() answers 1
// satisfiable, -1 unsatisfiable, 0 unknown. After 1 the model is in get_model(), after -1 the assumptions
// used are in get_unsat_core(). push and pop frame what may be forgotten.
//
// A context is usable, inconsistent (a conflict at the base level) or type-incorrect; the latter two last
// until a pop or reset. Nothing here reports by result: after each call that adds something, inconsistent()
// tells.
class context {
public:
    // The answer false asks the search to stop; called after each round of clause deletion.
    using search_callback = bool (*)(context*);

    explicit context(ast_manager* manager = nullptr);
    ~context();
    context(context const&) = delete; // owns clauses, constraints and bodies
    context& operator=(context const&) = delete;

    // Takes the place of the empty theory; only while there is no variable beyond the reserved ones.
    void set_theory_hub(std::unique_ptr<theory_hub> hub);
    [[nodiscard]] theory_hub& get_theory_hub() { return *m_hub; }
    [[nodiscard]] ast_manager* get_manager() const { return m_ast_manager; }

    // --- Variables.

    int create_bool_var_core(bool_var_body body);
    // The positive literal of a new variable without definition.
    literal create_fresh_bool_var();
    [[nodiscard]] unsigned num_bool_vars() const { return m_bool_var_bodies.size(); }
    [[nodiscard]] bool_var_body get_body(int var) const {
        return m_bool_var_bodies[static_cast<unsigned>(var)];
    }
    // Tells the theory of the atom behind var that it has (is_new) come to life or has survived a backjump.
    void init_bool_var(int var, bool is_new) noexcept;

    // --- Clauses and constraints.

    // The single entry of every clause. The result is null_clause when the clause has no record of its own:
    // trivially true, a unit, binary or empty. A clause that is false sets the conflict: test inconsistent()
    // afterwards.
    clause_ref create_clause_core(svector<literal> const& lits, clause_kind kind);
    // Brings what create_clause_core reads of l near. A reader of millions of clauses calls it some clauses
    // ahead.
    void prefetch(literal l) const {
        __builtin_prefetch(&m_assignment[static_cast<unsigned>(l.index())]);
        __builtin_prefetch(&m_watches[static_cast<unsigned>((~l).index())]);
    }
    // Problem clauses of two and three literals.
    void create_auxiliary_clause(literal a, literal b);
    void create_auxiliary_clause(literal a, literal b, literal c);
    // A fact of the base level, wherever the search stands; test inconsistent() afterwards.
    void assert_literal(literal l);
    // Takes ownership of c.
    void assert_constraint(constraint* c);
    // The sum of the coefficients of the true literals is at least bound; at the base level. The constraint
    // lives as long as the scope; it is null on a context that is or becomes dead beforehand. Test
    // inconsistent() afterwards.
    constraint* assert_lpb(vector<numeral> const& coeffs, svector<literal> const& lits, numeral const& bound);
    void insert_constraint_watch(literal l, constraint* c) { watches(l).insert_clause(watch_entry(c)); }
    bool remove_generic_watch(constraint* c, literal l) { return watches(l).remove_constraint(c); }
    [[nodiscard]] clause& get_clause(clause_ref ref) { return m_clauses[ref]; }
    [[nodiscard]] clause const& get_clause(clause_ref ref) const { return m_clauses[ref]; }
    [[nodiscard]] bool is_empty_clause(clause const& c) const;
    [[nodiscard]] bool is_unit_clause(clause const& c) const;
    [[nodiscard]] bool contains_clause(watch_set const& set, clause_ref ref) const;
    // Sorted copy of in without duplicates and false literals; false if the clause is trivially true.
    bool copy_using_or_simplification_rules(svector<literal> const& in, svector<literal>& out) const;

    // --- Gates.

    literal create_or(svector<literal> const& lits);
    literal create_or(literal a, literal b);
    literal create_or(literal a, literal b, literal c);
    literal create_iff(literal a, literal b);
    literal create_ite(literal c, literal t, literal e);

    // --- Assignment.

    // 1 true, -1 false, 0 unassigned.
    [[nodiscard]] int value(literal l) const { return m_assignment[static_cast<unsigned>(l.index())]; }
    [[nodiscard]] gexplanation antecedent(int var) const {
        return m_causes[static_cast<unsigned>(var)].m_antecedent;
    }
    [[nodiscard]] std::int64_t timestamp(literal l) const {
        return m_causes[static_cast<unsigned>(l.var())].m_timestamp;
    }
    // Gives l the value true. False if a conflict arose.
    bool assign_literal_core(literal l, gexplanation reason);
    // Fixpoint of Boolean and theory propagation; false on a conflict.
    bool propagate_constraints();
    // Keeps the first conflict.
    void set_conflict(gexplanation conflict);
    void set_binary_clause_conflict(literal a, literal b);
    [[nodiscard]] bool inconsistent() const { return !m_conflict.is_null(); }

    // --- Scopes.

    // Opens a user scope; nothing on an inconsistent or type-incorrect context.
    // The result tells whether a scope was opened.
    bool push();
    // Pushes that opened nothing and whose pops are still to come; kept for the callers that count them.
    [[nodiscard]] unsigned num_ignored_pushes() const { return m_num_ignored_pushes; }
    void set_num_ignored_pushes(unsigned n) { m_num_ignored_pushes = n; }
    // Closes user scopes, at most those that exist. The model is dropped.
    void pop(unsigned n) { pop_core(n, false); }
    void pop_and_keep_model(unsigned n) { pop_core(n, true); }
    void reset();
    [[nodiscard]] unsigned scope_lvl() const { return m_scope_lvl; }
    [[nodiscard]] unsigned base_lvl() const { return m_base_lvl; }
    [[nodiscard]] unsigned search_lvl() const { return m_search_lvl; }
    [[nodiscard]] bool at_base_lvl() const { return m_scope_lvl == m_base_lvl; }
    [[nodiscard]] arena& region() { return m_region; }
    // Remembers an undo record for the current scope. At scope 0 nothing is ever undone and nothing is
    // recorded.
    template <typename T>
    void push_strong_trail(T const& record) {
        if (m_scope_lvl == 0) return;
        push_trail_record(trail_word(new (m_region.allocate(sizeof(T))) T(record)));
    }

    // --- Assumptions.

    // From now on each check assumes l; the last entry for a variable wins.
    void add_assumption(literal l) { m_assumptions.push_back(l); }
    // Assumptions of the last failed check that took part in the refutation, as literal indices.
    [[nodiscard]] svector<int> const& get_unsat_core() const { return m_unsat_core; }

    // --- Formulas.

    // The translation of formulas; before the first assertion.
    void set_internalizer(std::unique_ptr<internalizer> i);
    // Asserts e for the current user scope. Nothing on an inconsistent or type-incorrect context. What is not
    // supported or not Boolean, and with g_type_check what is ill-typed anywhere, raises an exception, and
    // nothing of e stays.
    void assert_cnstr(expr* e);
    // The same with an id by which e can be retracted and appears in unsatisfiable cores.
    int assert_retractable_cnstr(expr* e);
    // The same, and max_sat may give e up at the price of the weight, which is above 0.
    int assert_weighted_cnstr(expr* e, numeral const& weight);
    // Lets go of a retractable or weighted assertion, until the pop of the current scope. False, and nothing
    // happens, if id is none of a live assertion.
    bool retract(int id);
    [[nodiscard]] bool is_assertion_id(int id) const;
    // The positive literal of a Boolean declaration's variable, made at the first request.
    literal create_bool_var(var_decl* decl);
    // The literal that stands for a Boolean declaration: that of its definition, if it has one, or else its
    // variable. What is not supported raises an exception.
    literal create_literal(var_decl* decl);
    // The variable of a Boolean declaration, null_bool_var if there is none.
    [[nodiscard]] int get_bool_var_for(var_decl* decl);
    // Replaces e by its value in the model. Without a valid model e stays as it is.
    void eval_in_model(shared_ptr<expr>& e);

    // --- Weights.

    // From now on var costs weight when it is true. A check assumes it false; max_sat and
    // find_weighted_model leave it open. A last assumption of its positive literal takes the weight out.
    void attach_weight(int var, numeral const& weight);
    // The positive literal of a new variable with a weight.
    literal create_fresh_weighted_bool_var(numeral const& weight);
    [[nodiscard]] vector<weighted_var> const& get_weighted_vars() const { return m_weighted_vars; }
    // Appends the indices of the negative literals of the weighted variables that the model pays for.
    void get_inconsistent_assertions(svector<int>& out) const;
    // Answers like check(), with the cost of the model in it: no attempt is made to lower it, but decisions
    // make weighted variables false. With random, all others are decided first, in a random order.
    int find_weighted_model(bool random);
    // 1 with a model of least cost, -1 if there is no model at any cost, 0 if the search was stopped or gave
    // up, with the best model found so far, if any.
    int max_sat();
    // Called by max_sat at each model that is cheaper than the one before.
    void set_improvement_callback(std::function<void(context&)> callback);

    // --- Questions.

    int check();
    // Ends a running search as soon as its loops notice; the answer is then 0. May be called from any thread
    // and from a signal handler; without effect while no search runs.
    void stop_the_search();
    [[nodiscard]] bool search_stopped() const {
        return (m_search_state.load(std::memory_order_relaxed) & stopped_bit) != 0;
    }
    // False when a search loop must leave: a type error or a stop.
    [[nodiscard]] bool keep_searching() const { return m_type_correct && !search_stopped(); }
    void set_search_callback(search_callback callback) { m_search_callback = callback; }
    void remove_search_callback();
    // Called every interval conflicts, for progress output; must not change the context.
    void set_progress_callback(std::function<void(context&)> callback, unsigned interval = 256);

    void set_type_error(char const* text);
    [[nodiscard]] bool type_correct() const { return m_type_correct; }
    [[nodiscard]] std::string const& get_type_incorrect_explanation() const { return m_type_error; }
    // From now on no assignment counts as a model, because of reason, a static text. Goes with the present scope;
    // the first reason stays.
    void set_incompleteness(char const* reason = "incomplete");
    // Whether "satisfiable" is out of reach at the present scope, or a model of the last question did not count;
    // pop drops the latter with the model.
    [[nodiscard]] bool incomplete() const {
        return m_incomplete != nullptr || m_incomplete_answer != nullptr;
    }
    // Why the models of the last question did not count; null if there was none, or if they did.
    [[nodiscard]] char const* get_incompleteness_reason() const { return m_incomplete_answer; }

    // Whether the commands of the native language show models and cores.
    [[nodiscard]] bool evidence() const { return m_evidence; }
    void set_evidence(bool value) { m_evidence = value; }
    [[nodiscard]] model& get_model() { return m_model; }
    [[nodiscard]] model const& get_model() const { return m_model; }
    // With true, each satisfiable answer is checked against clauses, constraints and theories.
    void set_validate_model(bool value) { m_validate_model = value; }
    // Whether the present assignment satisfies every problem clause, constraint and theory.
    [[nodiscard]] bool validate_assignment();
    // Result of the last validation that check ran.
    [[nodiscard]] bool validation_failed() const { return m_validation_failed; }

    // --- Figures, display, self-check.

    // The counters, with the figures of the present state and process filled in.
    [[nodiscard]] statistics get_statistics() const;
    // Numbers the conflicts.
    [[nodiscard]] std::uint64_t num_conflicts() const { return m_stats.m_num_conflicts; }
    // The theories' counters and their reasons by kind, one a line: prefix, name, value.
    void display_theory_statistics(std::ostream& out, char const* prefix = "") const;
    // Trail positions whose literals were, or are just being, visited by the propagation.
    [[nodiscard]] unsigned num_visited() const { return m_qhead; }
    [[nodiscard]] random_numbers& random() { return m_random; }
    void display(std::ostream& out, literal l) const;
    void display_bool_var(std::ostream& out, int var) const;
    void display(std::ostream& out, clause const& c) const;
    void display(std::ostream& out) const;
    [[nodiscard]] char const* get_name(gexplanation reason, literal l);
    // Recomputes the Boolean state from scratch and compares; at a fixpoint of propagation also that no
    // clause is unit or false. Aborts on the first difference.
    void check_invariant() const;

private:
    friend class absurd_explanation;
    friend class base_frame;
    friend class context_probe; // of the tests
    friend class invariant_checker;
    friend class max_sat_search;
    friend class search_frame;
    friend class theory_port;
    friend class stop_frame;
    friend class user_scope_frame;
    friend class weighted_decisions_frame;

    // Order of the decision heap: greatest activity first.
    struct var_lt {
        context const* m_context;
        bool operator()(int a, int b) const {
            return m_context->m_activity[static_cast<unsigned>(a)] >
                   m_context->m_activity[static_cast<unsigned>(b)];
        }
    };

    watch_set& watches(literal l) { return m_watches[static_cast<unsigned>(l.index())]; }
    [[nodiscard]] watch_set const& watches(literal l) const {
        return m_watches[static_cast<unsigned>(l.index())];
    }

    // variables.cpp
    void reserve_support_vars();
    void remove_bool_var();
    void free_body(int var);
    void flush_bool_var_bodies();

    // clauses.cpp
    void create_binary_clause(literal a, literal b, clause_kind kind);
    void choose_watches(clause& c, clause_kind kind);
    void select_watch(clause& c, unsigned position);
    void attach_clause(clause_ref ref);
    void detach_clause(clause_ref ref);
    void sweep_watches(bitvector const& sets);
    void settle_new_clause(clause_ref ref, clause_kind kind);
    void record_out_of_order(clause_ref ref);
    void forget_clause(clause_ref ref);
    [[nodiscard]] bool is_locked(clause_ref ref) const;
    void collect_clause_memory();

    // assignment.cpp, propagate.cpp
    void assign_unassigned(literal l, gexplanation reason);
    bool propagate_boolean_constraints();
    bool propagate_binary_clauses(literal l);
    bool propagate_watched_clauses(literal l);
    bool propagate_theories();
    bool hand_over_atoms();
    // Every assigned literal was propagated, every assigned atom handed over, and the theories have nothing to do.
    [[nodiscard]] bool nothing_waits() const;
    void count_reason(unsigned kind);
    void drop_pending_work();

    // analyze.cpp
    [[nodiscard]] unsigned timestamp2level(std::int64_t ts) const;
    // First timestamp of a scope: -1 for scope 0.
    [[nodiscard]] std::int64_t scope_floor(unsigned scope) const {
        return scope == 0 ? -1 : static_cast<std::int64_t>(m_scopes[scope - 1]) << 5;
    }
    [[nodiscard]] std::int64_t get_conflict_max_timestamp();
    bool resolve_conflict();
    void give_up_at_search_lvl();
    void find_first_uip(std::int64_t level_floor, std::int64_t base_floor);
    void resolve_antecedents(literal consequent, gexplanation reason, std::int64_t level_floor,
                             std::int64_t base_floor);
    void resolve_literal(literal antecedent, std::int64_t level_floor, std::int64_t base_floor);
    void bump_activity(int var);
    void rescale_var_activity();
    void append_antecedents(literal consequent, gexplanation reason, svector<literal>& out);

    // minimize.cpp
    void minimize_conflict_clause(svector<literal>& lits);
    bool implied_by_marked(literal l, std::int64_t floor, std::uint32_t levels);
    bool visit_predecessor(int var, std::int64_t floor, std::uint32_t levels);
    void restore_to_unmark_size(unsigned size);

    // decide.cpp
    int select_var();
    int select_preferred_var();
    int select_random_var();
    int select_unassigned_weighted_var();
    template <typename Sequence, typename VarOf>
    int advance_to_unassigned(Sequence const& sequence, unsigned& cursor, VarOf var_of);
    bool choose_var_by_weight(int& var, bool& phase);
    bool decide();
    bool choose_phase(int var);

    // search.cpp
    int search();
    int search_core(unsigned conflict_limit, unsigned clause_limit, bool restart);
    int bounded_search(unsigned conflict_limit);
    bool handle_conflicts(unsigned& conflicts, bool& unsat);
    bool run_deletion_schedule();
    void finish_search(int& result);
    void return_to_scope(unsigned scope);
    void abandon_to_scope(unsigned scope);
    void build_model();

    // scopes.cpp, reanalyze.cpp, user_scopes.cpp
    void create_backtrack_point();
    void backtrack(unsigned n, bool propagate, bool clear_conflict);
    void pop_trail_stack_until(unsigned size);
    void push_trail_record(trail_word record);
    void reanalyze(unsigned old_scope);
    void reanalyze_literals(svector<literal>& lits);
    void reanalyze_binary_clauses(svector<binary_clause>& pairs);
    void reanalyze_clauses(svector<clause_ref>& refs);
    out_of_order_data& current_out_of_order_data();
    void pop_core(unsigned n, bool keep_model);
    void forget_answer();
    void undo_base_level_trail(base_level_trail& record);
    void remove_binary_clause(binary_clause const& pair);
    void flush_data();

    // weighted_vars.cpp, find_weighted_model.cpp
    constraint* assert_lpb_core(vector<numeral> const& coeffs, svector<literal> const& lits,
                                numeral const& bound);
    void collect_payable_vars(vector<weighted_var>& result) const;
    void random_var_permutation();

    // assumptions.cpp
    void assert_extra_assumptions(bool with_weights);
    bool assert_assumption(literal l);
    void build_unsat_assumption_core();

    // simplify_clauses.cpp, delete_learned.cpp
    void simplify_clauses();
    void discard_true_literal(literal l);
    void simplify_clause_list(svector<clause_ref>& list);
    bool simplify_clause(clause_ref ref);
    void remove_irrelevant_learned_clauses();
    void remove_half_of_learned_clauses();
    void remove_dead_clauses(svector<clause_ref>& list, unsigned first, bool decay);

    // assertions.cpp
    shared_ptr<expr> prepare_assertion(expr* e);
    int assert_guarded(expr* prepared, literal guard);

    // gates.cpp
    literal lookup_gate(gate_kind kind);
    literal create_gate(gate_kind kind, svector<literal> const& args);
    literal create_iff_core(literal a, literal b);
    literal create_ite_core(literal c, literal t, literal e);
    [[nodiscard]] literal base_value(literal l) const;

    // --- State. Unless a remark says otherwise, reset() puts the start value back.

    ast_manager* m_ast_manager;                   // of the caller; not owned, may be null
    std::unique_ptr<theory_hub> m_hub;            // the theories
    std::unique_ptr<internalizer> m_internalizer; // null until set
    model m_model;                                // of the last satisfiable answer
    statistics m_stats;
    svector<std::uint64_t> m_reason_counts; // by number of reason_kind: reasons that were made
    random_numbers m_random;                // not reset
    def_table m_def2var;                    // variables by their definition

    // When and why a variable got its value. Timestamp: trail position of the assignment shifted left by
    // five, OR the scope modulo 32; or scope_floor(m_base_lvl) for values that hold below every retractable
    // scope.
    struct cause {
        std::int64_t m_timestamp = 0; // valid while assigned, stale otherwise
        gexplanation m_antecedent;    // null_explanation while unassigned
    };

    // Parallel arrays, indexed by literal or variable.
    svector<signed char> m_assignment;        // by literal: 1 true, -1 false, 0 unassigned
    svector<watch_set> m_watches;             // by literal: what to visit when it becomes true
    svector<cause> m_causes;                  // by variable: analysis reads both parts together
    svector<double> m_activity;               // by variable
    svector<bool_var_body> m_bool_var_bodies; // by variable
    bitvector m_marks;                        // by variable: scratch of analysis, clear between analyses
    bitvector m_is_guard;                     // by variable: the guard of a retractable or weighted assertion
    bitvector m_last_phase;                   // by variable: its value before it was last unassigned
    bitvector m_has_atom;                     // by variable: the body has theory content
    unsigned m_num_atoms = 0;                 // bits of m_has_atom that are set
    heap<var_lt> m_var_heap;                  // every unassigned variable from 3 on, by activity
    double m_var_inc = 1.0;                   // what a bump adds; grows instead of the activities decaying

    unsigned m_scope_lvl = 0;    // current scope
    unsigned m_search_lvl = 0;   // scope at which the search started; not reset
    unsigned m_base_lvl = 0;     // scopes pushed by the user
    bool m_backtracking = false; // an undo is running
    svector<unsigned> m_scopes;  // trail size at the start of each scope
    svector<trail_word> m_trail;
    unsigned m_qhead = 0;        // next trail position to propagate
    unsigned m_theory_qhead = 0; // next trail position whose atom is to be handed to the theories
    vector<base_level_trail> m_base_level_trails;
    vector<out_of_order_data> m_out_of_order_stack;
    scoped_arena m_region; // explanations, trail records and other objects of one scope

    clause_store m_clauses;       // before m_conflict_clause, which lives in it
    gexplanation m_conflict;      // the pending conflict
    clause_ref m_conflict_clause; // two scratch literals: a binary conflict
    false_explanation m_false;    // a conflict that rests on nothing

    svector<clause_ref> m_problem_clauses;
    svector<clause_ref> m_learned_clauses;  // oldest first
    ptr_vector<constraint> m_constraints;   // owned
    unsigned m_num_input_clauses = 0;       // problem clauses offered, before simplification
    unsigned m_first_deletable_learned = 0; // learned clauses below this index are never deleted
    unsigned m_simp_qhead = 0;              // trail positions that simplify_clauses has used
    std::int64_t m_simp_budget = 0;         // propagations to go until the next simplification pays

    svector<literal> m_assumptions;           // guards and retractions in order of arrival
    literal m_failed_assumption;              // an assumption that contradicted a value when it was made
    std::int64_t m_assumptions_timestamp = 0; // just behind the last assumption
    svector<int> m_unsat_core;

    vector<weighted_var> m_weighted_vars;        // in order of creation; cut by pop
    vector<weighted_var> m_sorted_weighted_vars; // heaviest first; during max_sat only
    unsigned m_next_weighted_var = 0;            // where to look for the next weighted variable to decide
    unsigned m_next_random_var = 0;              // all of m_random_order before are assigned
    svector<int> m_random_order;                 // the other variables; during find_weighted_model only
    bool m_decide_by_weight = false;             // decisions follow m_random_order, then m_weighted_vars
    bool m_prefer_weighted_vars = false;         // decisions take m_sorted_weighted_vars first
    bool m_need_assignment = false;              // keep the Boolean values even if no model is to be built
    std::function<void(context&)> m_improvement_callback; // not reset

    // The number of the search, shifted left by two, OR running_bit while it runs, OR stopped_bit when it was
    // or shall be stopped. One word, so that a stop that comes late never hits the search after the one it
    // meant.
    static constexpr std::uint64_t running_bit = 1, stopped_bit = 2;
    std::atomic<std::uint64_t> m_search_state{0};
    bool m_type_correct = true;
    char const* m_incomplete = nullptr; // why an assignment would be no model; restored by the trail
    char const* m_incomplete_answer =
        nullptr;                       // m_incomplete at the first such assignment of the last question
    bool m_evidence = false;           // not reset
    unsigned m_num_ignored_pushes = 0; // pushes on a dead context that await their pops
    bool m_validate_model = false;     // not reset
    bool m_validation_failed = false;
    std::string m_type_error;
    search_callback m_search_callback;                 // not reset
    std::function<void(context&)> m_progress_callback; // not reset
    unsigned m_progress_callback_interval = 256;       // conflicts; a power of two
    unsigned m_progress_interval = 1000;               // decisions between progress dots

    // Scratch, kept to avoid allocation in hot paths.
    svector<literal> m_simplified_lits; // create_clause_core
    svector<literal> m_aux_lits;        // create_auxiliary_clause
    svector<literal> m_gate_lits;       // create_or of two and three literals
    svector<literal> m_handed_lits;     // hand_over_atoms
    svector<literal> m_learned_lits;    // resolve_conflict: the clause being learned
    svector<literal> m_antecedent_lits; // resolve_conflict, minimization, cores
    svector<int> m_to_unmark;           // minimization: variables it marked
    svector<int> m_implied_stack;       // minimization: depth-first walk
    unsigned m_num_open = 0;            // resolve_conflict: marked literals of the conflict level
};

// The one step of assigning an unassigned literal.
inline bool context::nothing_waits() const {
    return m_qhead == m_trail.size() && m_theory_qhead == m_trail.size() && !m_hub->can_propagate();
}

inline void context::assign_unassigned(literal l, gexplanation reason) {
    VEXOR_ASSERT(value(l) == 0);
    unsigned const var = static_cast<unsigned>(l.var());
    m_assignment[static_cast<unsigned>(l.index())] = 1;
    m_assignment[static_cast<unsigned>((~l).index())] = -1;
    m_causes[var] = {(static_cast<std::int64_t>(m_trail.size()) << 5) | (m_scope_lvl & 31), reason};
    m_trail.push_back(trail_word(l));
}

} // namespace vexor
