// What the questions to a context put up for the time of a search and must take down on every way out.
#pragma once

#include "search/context.h"

#include <exception>

namespace vexor {

// While one lives, context::stop_the_search has an effect. Frames nest: only the outermost forgets an older
// request, so a stop that comes between two searches of one question ends the question.
class stop_frame {
public:
    explicit stop_frame(context& ctx)
        : m_context(ctx)
        , m_is_outermost((state() & context::running_bit) == 0) {
        if (!m_is_outermost) return;
        std::uint64_t const number = (state() >> 2) + 1;
        m_context.m_search_state.store(number << 2 | context::running_bit, std::memory_order_release);
    }
    stop_frame(stop_frame const&) = delete; // ends once
    stop_frame& operator=(stop_frame const&) = delete;
    ~stop_frame() {
        if (m_is_outermost)
            m_context.m_search_state.fetch_and(~context::running_bit, std::memory_order_release);
    }

private:
    [[nodiscard]] std::uint64_t state() const {
        return m_context.m_search_state.load(std::memory_order_relaxed);
    }

    context& m_context;
    bool m_is_outermost;
};

// While one lives, decisions follow the random order of the variables without weight, then the others.
class weighted_decisions_frame {
public:
    weighted_decisions_frame(context& ctx, bool active)
        : m_context(ctx) {
        ctx.m_decide_by_weight = active;
        ctx.m_next_weighted_var = ctx.m_next_random_var = 0;
        if (active) ctx.random_var_permutation();
    }
    weighted_decisions_frame(weighted_decisions_frame const&) = delete; // ends once
    weighted_decisions_frame& operator=(weighted_decisions_frame const&) = delete;
    ~weighted_decisions_frame() {
        m_context.m_decide_by_weight = false;
        m_context.m_random_order.reset();
    }

private:
    context& m_context;
};

// Leads back to the base level: no scope of a question survives it, nor does a conflict that rests on one.
class base_frame {
public:
    explicit base_frame(context& ctx)
        : m_context(ctx)
        , m_num_exceptions(std::uncaught_exceptions()) {}
    base_frame(base_frame const&) = delete; // ends once
    base_frame& operator=(base_frame const&) = delete;
    ~base_frame() noexcept(false) {
        if (std::uncaught_exceptions() == m_num_exceptions)
            m_context.return_to_scope(m_context.m_base_lvl);
        else
            m_context.abandon_to_scope(m_context.m_base_lvl);
    }

private:
    context& m_context;
    int m_num_exceptions;
};

// A user scope that is closed with what was searched in it; the model stays.
class user_scope_frame {
public:
    explicit user_scope_frame(context& ctx)
        : m_context(ctx)
        , m_num_exceptions(std::uncaught_exceptions()) {
        unsigned const outer_lvl = ctx.m_base_lvl;
        ctx.push();
        m_is_open = ctx.m_base_lvl > outer_lvl;
    }
    user_scope_frame(user_scope_frame const&) = delete; // ends once
    user_scope_frame& operator=(user_scope_frame const&) = delete;
    ~user_scope_frame() noexcept(false) {
        if (!m_is_open) return;
        if (std::uncaught_exceptions() == m_num_exceptions) {
            m_context.return_to_scope(m_context.m_base_lvl);
            m_context.pop_and_keep_model(1);
        } else {
            m_context.abandon_to_scope(m_context.m_base_lvl);
            m_context.abandon_to_scope(m_context.m_base_lvl - 1);
        }
    }
    // False if the context is dead, which push may find out.
    [[nodiscard]] bool is_open() const { return m_is_open; }

private:
    context& m_context;
    int m_num_exceptions;
    bool m_is_open = false;
};

} // namespace vexor
