#include "frontend/user_scopes.h"

#include "ast/ast_manager.h"
#include "search/context.h"

#include <algorithm>

namespace vexor {

void push_user_scope(context& ctx) {
    if (ctx.push())
        ctx.get_manager()->push();
    else
        ctx.set_num_ignored_pushes(ctx.num_ignored_pushes() + 1);
}

bool pop_user_scopes(context& ctx, unsigned n) {
    if (!has_user_scope(ctx)) return false;
    unsigned const num_ignored = std::min(n, ctx.num_ignored_pushes());
    ctx.set_num_ignored_pushes(ctx.num_ignored_pushes() - num_ignored);
    unsigned const num_open = std::min(n - num_ignored, ctx.base_lvl());
    if (num_open == 0) return true;
    // The context first: its atoms and variables stand for names of the scope.
    ctx.pop(num_open);
    ctx.get_manager()->pop(num_open);
    return true;
}

bool has_user_scope(context const& ctx) { return ctx.base_lvl() + ctx.num_ignored_pushes() > 0; }

} // namespace vexor
