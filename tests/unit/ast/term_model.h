// A plain model of terms for randomized tests: text in which bound variables count by the distance to their
// binder.
//
// Two terms are equal up to the names of bound variables exactly when their texts are, and substitution on
// texts cannot capture. Exponential on shared terms, on purpose: nothing is remembered.
#pragma once

#include "ast/node/nodes.h"
#include "ast/visit/ast_visitor.h"

#include <map>
#include <set>
#include <string>

namespace vexor_test {

using namespace vexor;

// What a free variable is replaced by; absent ones stay.
using text_env = std::map<var_decl*, std::string>;

class term_text {
public:
    explicit term_text(text_env env = {})
        : m_env(std::move(env)) {}

    std::string operator()(ast* a) { return print(a); }
    std::set<var_decl*> const& get_free_vars() const { return m_free; }

private:
    std::string print(ast* a) {
        if (a == nullptr) return "null";
        if (a->is_type()) return print_type(static_cast<type*>(a));
        return print_expr(static_cast<expr*>(a));
    }
    std::string print_type(type* t) {
        if (is_a<subrange>(t)) {
            auto* r = static_cast<subrange*>(t);
            return "[" + print(r->get_lower()) + ".." + print(r->get_upper()) + "]";
        }
        return t->get_cls_name();
    }
    std::string print_expr(expr* e) {
        std::string cls = e->get_cls_name();
        if (is_a<name_expr>(e)) return print_name(static_cast<name_expr*>(e)->get_decl());
        if (is_a<numeral_expr>(e)) return static_cast<numeral_expr*>(e)->get_value().to_string();
        if (is_a<application>(e)) {
            auto* a = static_cast<application*>(e);
            std::string s = "(" + print(a->get_fun());
            for (expr* arg : a->get_args()) s += " " + print(arg);
            return s + ")";
        }
        if (is_a<tuple_literal>(e)) {
            std::string s = "{";
            for (expr* part : static_cast<tuple_literal*>(e)->get_exprs()) s += " " + print(part);
            return s + "}";
        }
        if (is_a<let_expr>(e)) {
            auto* l = static_cast<let_expr*>(e);
            std::string s = "(let";
            unsigned n = 0;
            for (let_decl* d : l->get_bindings()) {
                s += " " + print(d->get_type()) + "=" + print(d->get_definition());
                enter(d, n++);
            }
            s += " " + print(l->get_expr()) + ")";
            leave(n);
            return s;
        }
        if (is_a<lambda_expr>(e) || is_a<forall_expr>(e)) {
            auto* b = static_cast<binding_expr*>(e);
            std::string s = "(" + cls;
            unsigned n = 0;
            for (var_decl* d : b->get_bindings()) {
                s += " " + print(d->get_type());
                enter(d, n++);
            }
            s += " " + print(b->get_expr()) + ")";
            leave(n);
            return s;
        }
        return cls; // names of operators and constants of the manager
    }
    std::string print_name(var_decl* d) {
        for (std::size_t i = m_bound.size(); i-- > 0;)
            if (m_bound[i] == d) return "#" + std::to_string(m_bound.size() - i);
        auto it = m_env.find(d);
        if (it != m_env.end()) return it->second;
        if (!d->is_local()) return d->get_name().c_str();
        m_free.insert(d);
        return "free" + std::to_string(d->get_id());
    }
    void enter(var_decl* d, unsigned) { m_bound.push_back(d); }
    void leave(unsigned n) { m_bound.resize(m_bound.size() - n); }

    text_env m_env;
    std::vector<var_decl*> m_bound; // innermost last
    std::set<var_decl*> m_free;     // met so far
};

} // namespace vexor_test
