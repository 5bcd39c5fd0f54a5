// Applications: definitions, beta-reduction, updated functions.
#include "ast/node/ast_manager.h"
#include "base/deep_stack.h"
#include "simplify/free_variables.h"
#include "simplify/simplify_visitor.h"

#include <optional>
#include <vector>

namespace vexor {

void simplify_visitor::process_app(application* a) {
    image_list args(*this, a->get_args());
    if (args.differs_from(a->get_args()))
        m_result = a->clone(args.data(), args.size());
    else
        keep(a);
}

// A lambda is applied as it stands: to simplify it first would visit its body twice, and n of them inside of
// each other 2^n times.
void simplify_visitor::visit(expr* fun, application* a) {
    if (fun->is_name_expr()) return process_app(a); // built-in
    if (takes_arguments(fun, a->num_args())) {
        image_list args(*this, a->get_args());
        reduce(static_cast<lambda_expr*>(fun), args);
    } else {
        shared_ptr<expr> image = image_of(fun);
        apply_image(image.get(), a);
    }
}

void simplify_visitor::visit(name_expr* fun, application* a) {
    bool changed;
    bool expand_recursive = m_unfold_recursive && m_unfold_depth < max_unfold_depth;
    shared_ptr<expr> e = convert_name_expr(fun, expand_recursive, changed);
    if (!changed) return apply_image(e.get(), a);
    image_list args(*this, a->get_args());
    bool recursive = is_recursive(fun);
    std::optional<unfolding> guard;
    if (recursive) guard.emplace(*this, fun);
    if (takes_arguments(e.get(), args.size())) {
        auto* lambda = static_cast<lambda_expr*>(e.get());
        return recursive ? reduce(lambda, args) : reduce_shared(lambda, args);
    }
    shared_ptr<expr> image = image_of(e.get());
    m_result = create_application(image.get(), args, a->get_pos());
}

void simplify_visitor::apply_image(expr* fun, application* a) {
    image_list args(*this, a->get_args());
    bool is_value = fun->is_lambda() || fun->is_function_update() || is_choice(fun);
    if (!is_value && fun == a->get_fun() && !args.differs_from(a->get_args())) return keep(a);
    m_result = create_application(fun, args, a->get_pos());
}

shared_ptr<expr> simplify_visitor::create_application(expr* fun, image_list const& args, int pos) {
    if (takes_arguments(fun, args.size())) {
        auto* lambda = static_cast<lambda_expr*>(fun);
        if (fun->has_free_vars()) {
            scope s(*this);
            protect_free_variables(fun);
            reduce(lambda, args);
        } else {
            reduce_shared(lambda, args);
        }
        return static_cast<expr*>(m_result.get());
    }
    if (fun->is_function_update()) return read_update(static_cast<function_update_expr*>(fun), args, pos);
    if (is_choice(fun)) {
        choice_results results;
        return apply_choice(to_app(fun), args, pos, results);
    }
    return mk<application>(fun, args.data(), args.size(), pos);
}

bool simplify_visitor::is_choice(expr* fun) {
    return is_app_of<ite_name_expr>(fun) && to_app(fun)->num_args() == 3;
}

// ((ite c f g) a ...)  to  (ite c (f a ...) (g a ...))
//
// The results of shared choices are remembered: there may be 2^n ways through n of them.
shared_ptr<expr> simplify_visitor::apply_choice(application* choice, image_list const& args, int pos,
                                                choice_results& results) {
    check_depth();
    if (shared_ptr<expr> const* known = results.find(choice)) return *known;
    auto apply = [&](expr* fun) {
        return is_choice(fun) ? apply_choice(to_app(fun), args, pos, results)
                              : create_application(fun, args, pos);
    };
    shared_ptr<expr> const t = apply(choice->get_arg(1));
    shared_ptr<expr> const e = apply(choice->get_arg(2));
    shared_ptr<expr> const result = create_ite(choice->get_arg(0), t.get(), e.get());
    results.insert(choice, result);
    return result;
}

bool simplify_visitor::takes_arguments(expr* fun, unsigned n) {
    return fun->is_lambda() && static_cast<lambda_expr*>(fun)->num_bindings() == n;
}

// Leaves the image of the body in m_result.
void simplify_visitor::reduce(lambda_expr* fun, image_list const& args) {
    scope s(*this);
    for (unsigned i = 0; i < args.size(); ++i) update_env(fun->get_binding(i), args[i]);
    accept_core(fun->get_expr());
}

// Calls below recursive ones are not remembered: how far they are unfolded depends on the depth.
void simplify_visitor::reduce_shared(lambda_expr* fun, image_list const& args) {
    if (m_unfold_depth > 0 || !m_calls.is_reusable(fun)) return reduce(fun, args);
    if (expr* known = m_calls.find(fun, args.data(), args.size())) {
        m_result = known;
        return;
    }
    shared_ptr<lambda_expr> held(fun);
    reduce(fun, args);
    shared_ptr<expr> result = static_cast<expr*>(m_result.get());
    m_calls.insert(fun, args.data(), args.size(), result.get());
    m_result = result.get();
}

// An image is about to be visited like a source term: what the environment says about variables of the same
// declarations is not meant for it.
void simplify_visitor::protect_free_variables(expr* image) {
    for (var_decl* d : free_variables_of(image)) {
        shared_ptr<ast> const* value = get_env()->peek(d);
        if (value != nullptr && value->get() != d) get_env()->bind(d, d, false);
    }
}

// ((update f (i ...) v) j ...)  to  (ite (and (= i j) ...) v (f j ...))
//
// A loop over the updates, from the last to the first: there may be a hundred thousand of them.
shared_ptr<expr> simplify_visitor::read_update(function_update_expr* u, image_list const& args, int pos) {
    struct choice {
        shared_ptr<expr> m_condition;
        expr* m_value;
    };
    std::vector<choice> choices;
    expr* fun = u;
    shared_ptr<expr> result;
    while (result.get() == nullptr) {
        if (!fun->is_function_update() ||
            static_cast<function_update_expr*>(fun)->num_args() != args.size()) {
            result = fun->is_function_update()
                         ? shared_ptr<expr>(mk<application>(fun, args.data(), args.size(), pos))
                         : create_application(fun, args, pos);
            break;
        }
        auto* update = static_cast<function_update_expr*>(fun);
        shared_ptr<expr> condition = at_position(update, args);
        if (is_true(condition.get()))
            result = update->get_new_value();
        else if (!is_false(condition.get()))
            choices.push_back({condition, update->get_new_value()});
        fun = update->get_target();
    }
    for (unsigned i = static_cast<unsigned>(choices.size()); i-- > 0;)
        result = create_ite(choices[i].m_condition.get(), choices[i].m_value, result.get());
    return result;
}

// (and (= i j) ...), the condition that the update is about these arguments.
shared_ptr<expr> simplify_visitor::at_position(function_update_expr* u, image_list const& args) {
    simplify_or_visitor differs(*this);
    for (unsigned i = 0; i < args.size() && !differs.is_true(); ++i)
        differs.add_image(create_eq(u->get_arg(i), args[i]).get(), true);
    return mk_not(differs.to_expr(u->get_manager(), -1).get());
}

} // namespace vexor
