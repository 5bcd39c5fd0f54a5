// Rewrites an expression bottom-up to the small language that the internalizer reads: Boolean structure in
// `or` and `not` alone, no lets, no definitions, no updates of tuples and records, quantifiers normalized.
//
// There are two kinds of terms here. Source terms stand for what the environment makes of them, and are
// turned into images by image_of. Images are simplified; the environment does not speak about them, and
// functions that take images never visit them again. The exception is the body of a lambda that became an
// image before it was applied (see beta_reduce): its free variables are protected from the environment
// meanwhile.
//
// Keeps:   no two binders in the images have the same variable, and none has a free variable of the input: a
//          quantifier can be moved to where another one's variables are visible.
// Ends:    recursive definitions are unfolded to a fixed depth and a fixed number of times.
// Cost:    linear in the distinct nodes of the input, where nothing is defined as a function, and in the size
//          of the beta-normal form otherwise; a function is applied once to the same arguments.
#pragma once

#include "ast/visit/map_ext_visitor.h"
#include "simplify/call_results.h"
#include "simplify/occurrences.h"
#include "simplify/simplify_or_visitor.h"

namespace vexor {

class simplify_visitor : public map_ext_visitor {
public:
    // The nesting of unfolded recursive calls, and the number of all of them in one run.
    static constexpr unsigned max_unfold_depth = 30;
    static constexpr unsigned max_unfoldings = 1U << 16;

    simplify_visitor()
        : map_ext_visitor(false) {}

    shared_ptr<expr> operator()(expr* e);
    shared_ptr<ast> accept_core(ast* a) override;
    void reset() override;
    // The image of a source term, with no other reference on it than those it needs.
    shared_ptr<expr> image_of(expr* e);

    // May calls of recursive definitions be unfolded? Default: true.
    void set_unfold_recursive(bool value) { m_unfold_recursive = value; }

    // Images, in a stretch of m_images; gone with the object. Lists end in the reverse order of their making.
    class image_list {
    public:
        explicit image_list(simplify_visitor& v)
            : m_visitor(v)
            , m_base(v.m_images.size()) {}
        image_list(simplify_visitor& v, child_array<expr> const& terms);
        image_list(image_list const&) = delete; // stands for a stretch of time
        image_list& operator=(image_list const&) = delete;
        ~image_list() { m_visitor.m_images.shrink(m_base); }

        unsigned size() const { return m_visitor.m_images.size() - m_base; }
        expr* operator[](unsigned i) const { return m_visitor.m_images[m_base + i]; }
        // Valid until the next image is made.
        expr* const* data() const { return m_visitor.m_images.data() + m_base; }
        void push_back(expr* e) { m_visitor.m_images.push_back(e); }
        bool differs_from(child_array<expr> const& terms) const;

    private:
        simplify_visitor& m_visitor;
        unsigned m_base; // where the list begins
    };

    // Of the term being simplified.
    ast_manager* get_manager() const { return m_manager; }

    // --- Builders; all arguments are images.
    shared_ptr<expr> create_or(expr* a, expr* b);
    shared_ptr<expr> create_and(expr* a, expr* b);
    shared_ptr<expr> create_ite(expr* c, expr* t, expr* e);
    shared_ptr<expr> create_eq(expr* a, expr* b);
    shared_ptr<expr> create_application(expr* fun, image_list const& args, int pos);
    shared_ptr<expr> create_selection(expr* tuple, unsigned idx, int pos);
    shared_ptr<expr> create_selection(expr* record, identifier* id, int pos);

    using map_ext_visitor::visit;
    // Names and binders.
    void visit(name_expr* n) override;
    void visit(immutable_name_expr* n) override;
    void visit(let_expr* n) override;
    void visit(binding_expr* n) override;
    void visit(quantified_expr* n) override;
    void visit(fresh_vars_expr* n) override;
    // Boolean structure.
    void visit(or_name_expr* fun, application* a) override;
    void visit(and_name_expr* fun, application* a) override;
    void visit(implies_name_expr* fun, application* a) override;
    void visit(not_name_expr* fun, application* a) override;
    void visit(ite_name_expr* fun, application* a) override;
    void visit(eq_name_expr* fun, application* a) override;
    void visit(diseq_name_expr* fun, application* a) override;
    // Arithmetic.
    void visit(le_name_expr* fun, application* a) override;
    void visit(lt_name_expr* fun, application* a) override;
    void visit(ge_name_expr* fun, application* a) override;
    void visit(gt_name_expr* fun, application* a) override;
    void visit(add_name_expr* fun, application* a) override;
    void visit(sub_name_expr* fun, application* a) override;
    void visit(mul_name_expr* fun, application* a) override;
    void visit(div_name_expr* fun, application* a) override;
    void visit(int_pred_name_expr* fun, application* a) override;
    void visit(real_pred_name_expr* fun, application* a) override;
    // Applications.
    void visit(expr* fun, application* a) override;
    void visit(name_expr* fun, application* a) override;
    // Bit-vectors.
    void visit(bitvector_constant* n) override;
    void visit(bv_add_name_expr* fun, application* a) override;
    void visit(bv_sub_name_expr* fun, application* a) override;
    void visit(bv_minus_name_expr* fun, application* a) override;
    void visit(bv_mul_name_expr* fun, application* a) override;
    void visit(bv_and_name_expr* fun, application* a) override;
    void visit(bv_or_name_expr* fun, application* a) override;
    void visit(bv_xor_name_expr* fun, application* a) override;
    void visit(bv_not_name_expr* fun, application* a) override;
    void visit(bv_concat_name_expr* fun, application* a) override;
    void visit(bv_extract_name_expr* fun, application* a) override;
    void visit(bv_shift_left0_name_expr* fun, application* a) override;
    void visit(bv_shift_left1_name_expr* fun, application* a) override;
    void visit(bv_shift_right0_name_expr* fun, application* a) override;
    void visit(bv_shift_right1_name_expr* fun, application* a) override;
    void visit(bv_shift_righta_name_expr* fun, application* a) override;
    void visit(bv_sign_extend_name_expr* fun, application* a) override;
    void visit(bv_zero_extend_name_expr* fun, application* a) override;
    void visit(bv_shl_name_expr* fun, application* a) override;
    void visit(bv_lshr_name_expr* fun, application* a) override;
    void visit(bv_ashr_name_expr* fun, application* a) override;
    void visit(bv_lt_name_expr* fun, application* a) override;
    void visit(bv_le_name_expr* fun, application* a) override;
    void visit(bv_gt_name_expr* fun, application* a) override;
    void visit(bv_ge_name_expr* fun, application* a) override;
    void visit(sbv_lt_name_expr* fun, application* a) override;
    void visit(sbv_le_name_expr* fun, application* a) override;
    void visit(sbv_gt_name_expr* fun, application* a) override;
    void visit(sbv_ge_name_expr* fun, application* a) override;
    // Tuples, records and data types.
    void visit(tuple_selection* n) override;
    void visit(record_selection* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(accessor_name_expr* fun, application* a) override;
    void visit(recognizer_name_expr* fun, application* a) override;

private:
    friend class simplify_or_visitor; // works in m_or_lists

    // One more recursive call is being unfolded; throws when there were too many.
    class unfolding {
    public:
        unfolding(simplify_visitor& v, name_expr* n);
        unfolding(unfolding const&) = delete; // stands for a stretch of time
        unfolding& operator=(unfolding const&) = delete;
        ~unfolding() { --m_visitor.m_unfold_depth; }

    private:
        simplify_visitor& m_visitor;
    };

    void simplify_or(application* a, bool negated_outside);
    void simplify_arith(application* a, bool is_predicate);
    void simplify_bv_sum(application* a, unsigned num_args);
    template <class F>
    void simplify_bv_shift(application* a, F build);
    template <class F>
    void simplify_bv_variable_shift(application* a, F build);
    void simplify_bv_relation(application* a);
    void keep_if_same(application* a, shared_ptr<expr> const& result);
    // What process_app leaves in m_result.
    application* image_app(application* a);
    // m_result is the application with images for its arguments, itself if none of them changed.
    void process_app(application* a);
    // The same for an application to one argument, whose image is given.
    void rebuild(application* a, expr* arg);

    // What a name stands for. changed: it is a definition, a source term; otherwise the result is an image.
    shared_ptr<expr> convert_name_expr(name_expr* n, bool expand_recursive, bool& changed);
    shared_ptr<expr> definition_of(const_decl* d);
    // Is the name one of a constant with a recursive definition?
    static bool is_recursive(name_expr* n) {
        return n->get_decl()->is_const_decl() && static_cast<const_decl*>(n->get_decl())->is_recursive();
    }
    static bool takes_arguments(expr* fun, unsigned n);
    void apply_image(expr* fun, application* a);
    // What choices between functions gave for one list of arguments.
    using choice_results = hash_map<expr*, shared_ptr<expr>, fast_ptr_hash<expr>>;
    static bool is_choice(expr* fun);
    shared_ptr<expr> apply_choice(application* choice, image_list const& args, int pos,
                                  choice_results& results);
    void reduce(lambda_expr* fun, image_list const& args);
    // The same for a closed lambda that may be applied again; its results are remembered.
    void reduce_shared(lambda_expr* fun, image_list const& args);
    void protect_free_variables(expr* image);
    shared_ptr<expr> read_update(function_update_expr* u, image_list const& args, int pos);
    shared_ptr<expr> at_position(function_update_expr* u, image_list const& args);
    shared_ptr<var_decl> bind_variable(var_decl* d, type* of);
    void bind_quantified(quantified_expr* n, shared_ptr_vector<var_decl>& variables,
                         shared_ptr_vector<expr>& restrictions);
    shared_ptr<expr> restrict_body(bool is_forall, shared_ptr_vector<expr> const& restrictions, expr* body);

    ast_manager* m_manager = nullptr;           // see get_manager
    bool m_unfold_recursive = true;             // see set_unfold_recursive
    unsigned m_unfold_depth = 0;                // recursive calls being unfolded
    occurrences m_occurrences;                  // of variables in images
    unsigned m_num_unfoldings = 0;              // recursive calls unfolded in this run
    shared_ptr_vector<expr> m_images;           // see image_list
    simplify_or_visitor::work_lists m_or_lists; // of the connectives being simplified
    hash_map<const_decl*, shared_ptr<expr>, fast_ptr_hash<const_decl>> m_definitions; // see definition_of
    call_results m_calls;                                                             // see reduce_shared
    hash_set<var_decl*, fast_ptr_hash<var_decl>> m_image_variables; // bound in images, or free in the input
    shared_ptr_vector<var_decl> m_kept_variables;                   // keeps the members of m_image_variables
};

// The complement of an image: constants are flipped, a `not` gives its argument, and anything else gets a
// `not` at its position.
shared_ptr<expr> mk_not(expr* e);

// The same term without outer negations; negated is flipped for each.
inline expr* strip_not(expr* e, bool& negated) {
    while (is_app_of<not_name_expr>(e) && to_app(e)->num_args() == 1) {
        e = to_app(e)->get_arg(0);
        negated = !negated;
    }
    return e;
}

} // namespace vexor
