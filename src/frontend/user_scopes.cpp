#include "frontend/user_scopes.h"

#include "ast/node/ast_manager.h"
#include "search/context.h"

#include <algorithm>

namespace vexor {

void push_user_scope(context& ctx) {
    if (!ctx.push()) ctx.set_num_ignored_pushes(ctx.num_ignored_pushes() + 1);
    ctx.get_manager()->push();
}

// The pushes that a dead context ignored are the newest ones: it came to life again in none of them.
bool pop_user_scopes(context& ctx, unsigned n) {
    if (!has_user_scope(ctx)) return false;
    unsigned const num_ignored = std::min(n, ctx.num_ignored_pushes());
    unsigned const num_open = std::min(n - num_ignored, ctx.base_lvl());
    ctx.set_num_ignored_pushes(ctx.num_ignored_pushes() - num_ignored);
    // The context first: its atoms and variables stand for names of the scope.
    if (num_open > 0) ctx.pop(num_open);
    ctx.get_manager()->pop(num_ignored + num_open);
    return true;
}

bool has_user_scope(context const& ctx) { return ctx.base_lvl() + ctx.num_ignored_pushes() > 0; }

} // namespace vexor
