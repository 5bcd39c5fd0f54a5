// The user's scopes, of names and of assertions together.
#pragma once

namespace vexor {

class context;

// A push on a context that is inconsistent or has a type error opens a scope of names, but none of the
// context, which remembers it: the pop that belongs to it forgets the names alone, so that balanced pairs
// never lose an outer scope nor forget why the context is dead.
//
// Keeps: the manager of the context has one scope for each user scope of the context and each ignored push.
void push_user_scope(context& ctx);
// Closes n scopes, at most those that are open. False if none is open.
bool pop_user_scopes(context& ctx, unsigned n);
[[nodiscard]] bool has_user_scope(context const& ctx);

} // namespace vexor
