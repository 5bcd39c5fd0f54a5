// What the tests of the term language share: a manager and short names for its factories.
#pragma once

#include "ast/node/ast_manager.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>

namespace vexor_test {

using namespace vexor;

class ast_test : public testing::Test {
public:
    using e_ptr = shared_ptr<expr>;
    using v_ptr = shared_ptr<var_decl>;

    ~ast_test() override { m.check_invariant(); }

    shared_ptr<identifier> id(std::string const& name, int pos = -1) {
        return mk<identifier>(&m, ustring(name.c_str()), pos);
    }
    type* boolean() { return m.create_bool_type(); }
    type* integer() { return m.create_int_type(); }
    v_ptr var(std::string const& name, type* t = nullptr) {
        return mk<var_decl>(id(name), t == nullptr ? integer() : t, -1);
    }
    v_ptr anonymous(type* t) { return mk<var_decl>(static_cast<identifier*>(nullptr), t, -1); }
    // A global constant; the manager keeps it.
    const_decl* constant(std::string const& name, type* t = nullptr) {
        shared_ptr<const_decl> d = mk<const_decl>(id(name), t == nullptr ? integer() : t, -1);
        m.add_global_const_decl(d.get(), true);
        return d.get();
    }
    e_ptr name(var_decl* d) { return d->create_name_expr(-1); }
    e_ptr num(int value) { return mk<numeral_expr>(&m, numeral(value), -1); }
    template <class D>
    e_ptr app(std::initializer_list<expr*> args) {
        return app(m.mk_name<D>(), args);
    }
    e_ptr app(expr* fun, std::initializer_list<expr*> args) {
        return mk<application>(fun, args.begin(), static_cast<unsigned>(args.size()), -1);
    }
    template <class B>
    e_ptr bind(std::initializer_list<var_decl*> vars, expr* body) {
        return mk<B>(vars.begin(), static_cast<unsigned>(vars.size()), body, -1);
    }
    e_ptr let(std::initializer_list<let_decl*> vars, expr* body) {
        return mk<let_expr>(vars.begin(), static_cast<unsigned>(vars.size()), body, -1);
    }
    shared_ptr<let_decl> let_var(std::string const& name, expr* definition) {
        return mk<let_decl>(id(name), static_cast<type*>(nullptr), definition, -1);
    }

    ast_manager m;
};

// Runs f on a thread with a stack of 512 KB.
template <class F>
void on_small_stack(F f) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 512 * 1024);
    pthread_t thread;
    auto run = [](void* p) -> void* {
        (*static_cast<F*>(p))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &f), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace vexor_test
