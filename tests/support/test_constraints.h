// Two constraints that the search has to propagate beside clauses, with lazy explanations: for tests of the
// constraint interface.
#pragma once

#include "search/context.h"

#include <ostream>
#include <stdexcept>
#include <vector>

namespace vexor_test {

// Thrown by the seams of the tests' theories.
struct seam_exception : std::runtime_error {
    explicit seam_exception(char const* where)
        : std::runtime_error(where) {}
};

// At most k of the literals are true. Every literal is watched, so that a visit is always due.
class at_most_constraint : public vexor::constraint {
public:
    at_most_constraint(std::vector<vexor::literal> lits, unsigned k)
        : m_lits(std::move(lits))
        , m_k(k) {}

    bool propagate(vexor::context* ctx, vexor::literal) noexcept override {
        ++m_num_visits;
        static_cast<void>(act(ctx));
        return true;
    }
    void remove(vexor::context* ctx, bool all) noexcept override {
        if (all) return;
        for (vexor::literal l : m_lits) ctx->remove_generic_watch(this, l);
    }
    bool init(vexor::context* ctx, bool is_new) noexcept override {
        m_ctx = ctx;
        if (is_new)
            for (vexor::literal l : m_lits) ctx->insert_constraint_watch(l, this);
        else
            ++m_num_reinits;
        return act(ctx);
    }
    void display(vexor::context const*, std::ostream& out) const override { out << "at most " << m_k; }
    [[nodiscard]] char const* get_kind() const override { return "at_most"; }
    [[nodiscard]] bool is_satisfied(vexor::context* ctx) override { return num_true(ctx) <= m_k; }
    // At a fixpoint nothing is left to propagate.
    [[nodiscard]] bool check_invariant(vexor::context* ctx) override {
        if (num_true(ctx) > m_k) return false;
        if (num_true(ctx) < m_k) return true;
        for (vexor::literal l : m_lits)
            if (ctx->value(l) == 0) return false;
        return true;
    }
    void get_antecedents(vexor::literal l, vexor::svector<vexor::literal>& out) noexcept override {
        ++m_num_explanations;
        bool const is_conflict = l == vexor::false_literal;
        unsigned needed = is_conflict ? m_k + 1 : m_k;
        for (vexor::literal x : m_lits) {
            if (needed == 0) return;
            if (m_ctx->value(x) <= 0) continue;
            if (!is_conflict && m_ctx->timestamp(x) >= m_ctx->timestamp(l)) continue;
            out.push_back(x);
            --needed;
        }
    }

    unsigned m_num_visits = 0;
    unsigned m_num_reinits = 0;
    unsigned m_num_explanations = 0;

private:
    [[nodiscard]] unsigned num_true(vexor::context* ctx) const {
        unsigned n = 0;
        for (vexor::literal l : m_lits) n += ctx->value(l) > 0 ? 1 : 0;
        return n;
    }
    // True if the constraint propagated or is violated.
    bool act(vexor::context* ctx) {
        unsigned const n = num_true(ctx);
        if (n < m_k) return false;
        if (n > m_k) {
            ctx->set_conflict(vexor::gexplanation::mk_lazy(this));
            return true;
        }
        for (vexor::literal l : m_lits)
            if (ctx->value(l) == 0) ctx->assign_literal_core(~l, vexor::gexplanation::mk_lazy(this));
        return true;
    }

    vexor::context* m_ctx = nullptr; // set by init
    std::vector<vexor::literal> m_lits;
    unsigned m_k;
};

// The exclusive or of the variables has a given value. Two variables are watched, in both polarities, and the
// watch moves: a visit may drop its entry.
class parity_constraint : public vexor::constraint {
public:
    parity_constraint(std::vector<int> vars, bool rhs)
        : m_vars(std::move(vars))
        , m_rhs(rhs) {}

    bool propagate(vexor::context* ctx, vexor::literal l) noexcept override {
        unsigned const mine = m_vars[0] == l.var() ? 0 : 1;
        if (m_vars.size() > 1) {
            for (unsigned i = 2; i < m_vars.size(); ++i) {
                if (ctx->value(vexor::literal(m_vars[i])) != 0) continue;
                std::swap(m_vars[mine], m_vars[i]);
                unwatch(ctx, ~l);
                watch(ctx, m_vars[mine]);
                return false;
            }
        }
        static_cast<void>(act(ctx));
        return true;
    }
    void remove(vexor::context* ctx, bool all) noexcept override {
        if (all) return;
        for (unsigned i = 0; i < 2 && i < m_vars.size(); ++i) {
            unwatch(ctx, vexor::literal(m_vars[i]));
            unwatch(ctx, vexor::literal(m_vars[i], true));
        }
    }
    bool init(vexor::context* ctx, bool is_new) noexcept override {
        m_ctx = ctx;
        if (is_new) {
            for (unsigned i = 0; i < 2 && i < m_vars.size(); ++i) {
                for (unsigned j = i + 1; j < m_vars.size(); ++j)
                    if (is_better(ctx, m_vars[j], m_vars[i])) std::swap(m_vars[i], m_vars[j]);
                watch(ctx, m_vars[i]);
            }
        }
        return act(ctx);
    }
    void display(vexor::context const*, std::ostream& out) const override { out << "parity"; }
    [[nodiscard]] char const* get_kind() const override { return "parity"; }
    [[nodiscard]] bool is_satisfied(vexor::context* ctx) override {
        return num_open(ctx) == 0 && parity(ctx) == m_rhs;
    }
    [[nodiscard]] bool check_invariant(vexor::context* ctx) override {
        return num_open(ctx) >= 2 || (num_open(ctx) == 0 && parity(ctx) == m_rhs);
    }
    void get_antecedents(vexor::literal l, vexor::svector<vexor::literal>& out) noexcept override {
        for (int v : m_vars) {
            if (l != vexor::false_literal && v == l.var()) continue;
            vexor::literal const x(v);
            out.push_back(m_ctx->value(x) > 0 ? x : ~x);
        }
    }

private:
    // Unassigned first, then the one assigned last.
    static bool is_better(vexor::context* ctx, int a, int b) {
        vexor::literal const x(a);
        vexor::literal const y(b);
        if ((ctx->value(x) == 0) != (ctx->value(y) == 0)) return ctx->value(x) == 0;
        return ctx->value(x) != 0 && ctx->timestamp(x) > ctx->timestamp(y);
    }
    void watch(vexor::context* ctx, int var) {
        ctx->insert_constraint_watch(vexor::literal(var), this);
        ctx->insert_constraint_watch(vexor::literal(var, true), this);
    }
    void unwatch(vexor::context* ctx, vexor::literal l) { ctx->remove_generic_watch(this, l); }
    [[nodiscard]] unsigned num_open(vexor::context* ctx) const {
        unsigned n = 0;
        for (int v : m_vars) n += ctx->value(vexor::literal(v)) == 0 ? 1 : 0;
        return n;
    }
    [[nodiscard]] bool parity(vexor::context* ctx) const {
        bool p = false;
        for (int v : m_vars) p ^= ctx->value(vexor::literal(v)) > 0;
        return p;
    }
    // True if the constraint propagated or is violated.
    bool act(vexor::context* ctx) {
        unsigned const open = num_open(ctx);
        if (open > 1) return false;
        if (open == 0) {
            if (parity(ctx) != m_rhs) ctx->set_conflict(vexor::gexplanation::mk_lazy(this));
            return true;
        }
        for (int v : m_vars) {
            if (ctx->value(vexor::literal(v)) != 0) continue;
            bool const value = parity(ctx) != m_rhs; // the missing one makes up for the difference
            ctx->assign_literal_core(vexor::literal(v, !value), vexor::gexplanation::mk_lazy(this));
            break;
        }
        return true;
    }

    vexor::context* m_ctx = nullptr; // set by init
    std::vector<int> m_vars;         // distinct; the first two are watched
    bool m_rhs;
};

} // namespace vexor_test
