// What the tests of the simplifier share.
#pragma once

#include "ast/node/ast_manager.h"
#include "simplify/simplify.h"
#include "support/random.h"
#include "support/term_evaluator.h"
#include "support/terms.h"

#include <gtest/gtest.h>

namespace vexor {

class simplify_fixture : public testing::Test {
protected:
    // The image of one pass, kept alive.
    expr* simple(expr* e) {
        shared_ptr<expr> result = e;
        basic_simplify(result);
        return t.keep(result);
    }
    std::string text(expr* e) { return vexor_test::to_text(simple(e)); }
    expr* boolean(char const* name) { return t.constant(name, t.bool_type()); }
    // A defined constant or function.
    expr* define(char const* name, type* of, expr* definition) {
        const_decl* d = t.make<const_decl>(t.id(name), of, definition, -1);
        m.add_global_const_decl(d, true);
        return t.use(d);
    }

    ast_manager m;
    vexor_test::terms t{m};
};

} // namespace vexor
