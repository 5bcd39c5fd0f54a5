// Exceptions that pass frames of C: a C++ program calls C, which calls the library, which raises; the program
// catches, and the context is as before the call that failed.
//
// frames_test FOLDER: writes its log there.
#include "c_frame.h"
#include "check.h"
#include "vexor.h"

#include <exception>
#include <functional>
#include <string>
#include <typeinfo>

namespace {

int call_action(void* data) {
    (*static_cast<std::function<void()>*>(data))();
    return 7;
}

// The message of the exception that action ends with, behind a frame of C; empty if it ends without.
std::string message_of(std::function<void()> action) {
    try {
        CHECK(through_c(call_action, &action) == 7);
    } catch (std::exception const& e) {
        std::string const message = e.what();
        return message.empty() ? "no message" : message;
    }
    return "";
}

bool fails(std::function<void()> const& action) { return !message_of(action).empty(); }

// A context with some state, and that this state is as before.
class subject {
public:
    subject() {
        m_x = vexor_mk_bool_var(m_ctx, "x");
        m_y = vexor_mk_bool_var(m_ctx, "y");
        vexor_push(m_ctx);
        vexor_expr const args[] = {m_x, m_y};
        vexor_assert(m_ctx, vexor_mk_or(m_ctx, args, 2));
        m_not_x = vexor_assert_retractable(m_ctx, vexor_mk_not(m_ctx, m_x));
        CHECK(vexor_check(m_ctx) == 1);
    }
    subject(subject const&) = delete; // owns its context
    subject& operator=(subject const&) = delete;
    ~subject() { vexor_del_context(m_ctx); }

    void is_as_before() {
        CHECK(vexor_inconsistent(m_ctx) == 0);
        // Scopes: one can be opened and closed, and what is in it goes.
        vexor_push(m_ctx);
        vexor_mk_bool_var_decl(m_ctx, "inner");
        assertion_id const not_y = vexor_assert_retractable(m_ctx, vexor_mk_not(m_ctx, m_y));
        CHECK(vexor_check(m_ctx) == -1);
        assertion_id core[3];
        CHECK(vexor_get_unsat_core(m_ctx, core, 3) == 2);
        CHECK(core[0] == not_y || core[1] == not_y);
        CHECK(core[0] == m_not_x || core[1] == m_not_x);
        vexor_pop(m_ctx);
        CHECK(vexor_get_var_decl_from_name(m_ctx, "inner") == nullptr);
        CHECK(vexor_get_var_decl_from_name(m_ctx, "x") == vexor_get_var_decl(m_x));
        CHECK(vexor_check(m_ctx) == 1);
        CHECK(vexor_get_value(vexor_get_model(m_ctx), vexor_get_var_decl(m_y)) == 1);
    }

    vexor_context m_ctx = vexor_mk_context();
    vexor_expr m_x = nullptr, m_y = nullptr;
    assertion_id m_not_x = 0;
};

void constructors(subject& s) {
    vexor_context const ctx = s.m_ctx;
    vexor_type const integer = vexor_mk_type(ctx, "int");
    int const bit = 1;
    CHECK(fails([&] { vexor_mk_or(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_and(ctx, &s.m_x, 0); }));
    CHECK(fails([&] { vexor_mk_sum(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_sub(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_mul(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_app(ctx, s.m_x, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_function_update(ctx, s.m_x, nullptr, 0, s.m_y); }));
    CHECK(fails([&] { vexor_mk_tuple_literal(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_function_type(ctx, nullptr, 0, integer); }));
    CHECK(fails([&] { vexor_mk_tuple_type(ctx, nullptr, 0); }));
    CHECK(fails([&] { vexor_mk_bitvector_type(ctx, 0); }));
    CHECK(fails([&] { vexor_mk_bitvector_type(ctx, (1u << 24) + 1); }));
    CHECK(fails([&] { vexor_mk_bitvector_type(ctx, ~0u); }));
    CHECK(fails([&] { vexor_mk_bv_constant(ctx, 0, 1); }));
    CHECK(fails([&] { vexor_mk_bv_constant(ctx, ~0u, 1); }));
    CHECK(fails([&] { vexor_mk_bv_constant_from_array(ctx, 0, &bit); }));
    CHECK(fails([&] { vexor_mk_bv_constant_from_array(ctx, (1u << 24) + 1, &bit); }));
    CHECK(fails([&] { vexor_mk_num_from_string(ctx, "1/0"); }));
    s.is_as_before();
}

void names(subject& s) {
    vexor_context const ctx = s.m_ctx;
    vexor_type const integer = vexor_mk_type(ctx, "int");
    CHECK(fails([&] { vexor_mk_bool_var_decl(ctx, "x"); }));
    CHECK(fails([&] { vexor_mk_var_decl(ctx, "x", integer); }));
    CHECK(fails([&] { vexor_mk_bool_var_decl(ctx, "bv-add"); }));
    s.is_as_before();
    // Names of a scope that the push is of.
    vexor_push(ctx);
    vexor_mk_bool_var_decl(ctx, "z");
    CHECK(fails([&] { vexor_mk_bool_var_decl(ctx, "z"); }));
    vexor_pop(ctx);
    CHECK(!fails([&] { vexor_mk_bool_var_decl(ctx, "z"); }));
    s.is_as_before();
}

void assertions(subject& s) {
    vexor_context const ctx = s.m_ctx;
    vexor_expr const i = vexor_mk_var_from_decl(ctx, vexor_mk_var_decl(ctx, "i", vexor_mk_type(ctx, "int")));
    vexor_expr const positive = vexor_mk_gt(ctx, i, vexor_mk_num(ctx, 0));
    // Beside what can be decided, so that a part of it was looked at already.
    vexor_expr const args[] = {vexor_mk_not(ctx, s.m_y), positive};
    vexor_expr const both = vexor_mk_and(ctx, args, 2);
    CHECK(fails([&] { vexor_assert(ctx, positive); }));
    CHECK(fails([&] { vexor_assert(ctx, both); }));
    CHECK(fails([&] { vexor_assert_retractable(ctx, both); }));
    CHECK(fails([&] { vexor_assert_weighted(ctx, both, 5); }));
    CHECK(fails([&] { vexor_assert_weighted(ctx, s.m_x, 0); }));
    CHECK(fails([&] { vexor_assert_weighted(ctx, s.m_x, -1); }));
    CHECK(message_of([&] { vexor_assert_weighted(ctx, s.m_x, -1); }) ==
          "The weight must be greater than zero.");
    s.is_as_before();
    vexor_enable_type_checker(1);
    vexor_expr const ill_typed = vexor_mk_not(ctx, i);
    CHECK(fails([&] { vexor_assert(ctx, ill_typed); }));
    CHECK(fails([&] { vexor_assert_retractable(ctx, ill_typed); }));
    CHECK(fails([&] { vexor_assert_weighted(ctx, ill_typed, 1); }));
    s.is_as_before();
    vexor_enable_type_checker(0);
}

// The model survives what failed without touching it, or is gone; it is never that of something else.
void questions(subject& s) {
    vexor_context const ctx = s.m_ctx;
    CHECK(vexor_check(ctx) == 1);
    vexor_model const m = vexor_get_model(ctx);
    vexor_expr const no_term = vexor_mk_not(ctx, vexor_mk_num(ctx, 3));
    CHECK(vexor_evaluate_in_model(m, no_term) == 0);
    vexor_enable_type_checker(1);
    CHECK(fails([&] { vexor_evaluate_in_model(m, no_term); }));
    vexor_enable_type_checker(0);
    CHECK(vexor_get_model(ctx) == m);
    CHECK(vexor_evaluate_in_model(m, s.m_y) == 1);
    s.is_as_before();
}

// A problem that takes more conflicts than it takes for the callback to be called: pigeons into holes.
void assert_pigeons(vexor_context ctx, unsigned num_holes) {
    auto in = [&](unsigned pigeon, unsigned hole) {
        return vexor_mk_bool_var(ctx, ("p" + std::to_string(pigeon) + "_" + std::to_string(hole)).c_str());
    };
    for (unsigned p = 0; p <= num_holes; ++p) {
        vexor_expr places[16];
        for (unsigned h = 0; h < num_holes; ++h) places[h] = in(p, h);
        vexor_assert(ctx, vexor_mk_or(ctx, places, num_holes));
        for (unsigned other = 0; other < p; ++other)
            for (unsigned h = 0; h < num_holes; ++h) {
                vexor_expr const pair[] = {vexor_mk_not(ctx, in(p, h)), vexor_mk_not(ctx, in(other, h))};
                vexor_assert(ctx, vexor_mk_or(ctx, pair, 2));
            }
    }
}

int raise_exception() { throw std::string("from the callback"); }

// An exception of the caller's own leaves a search through the library.
void callbacks(subject& s) {
    vexor_context const ctx = s.m_ctx;
    vexor_push(ctx);
    assert_pigeons(ctx, 9);
    c_callback_action = raise_exception;
    vexor_set_search_callback(ctx, c_callback);
    for (int i = 0; i < 2; ++i) {
        bool caught = false;
        std::function<void()> question;
        if (i == 1)
            question = [&] { vexor_max_sat(ctx); };
        else
            question = [&] { vexor_check(ctx); };
        try {
            through_c(call_action, &question);
        } catch (std::string const& text) {
            caught = text == "from the callback";
        }
        CHECK(caught);
    }
    vexor_remove_search_callback(ctx);
    vexor_pop(ctx);
    s.is_as_before();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::string const log_name = std::string(argv[1]) + "/frames.log";
    for (int with_log = 0; with_log < 2; ++with_log) {
        if (with_log != 0) vexor_enable_log_file(log_name.c_str());
        subject s;
        s.is_as_before();
        constructors(s);
        names(s);
        assertions(s);
        questions(s);
        callbacks(s);
    }
    if (num_failures == 0) std::printf("all holds\n");
    return num_failures != 0;
}
