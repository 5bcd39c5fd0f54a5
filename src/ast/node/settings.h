// Settings of the term language.
#pragma once

namespace vexor {

// Declarations and assertions are type-checked, and parsers keep positions in nodes.
extern bool g_type_check; // default: false
// The function theory compares types up to subtypes, not structurally.
extern bool g_relaxed_type_system; // default: true
// Rewriting visitors ask whether a node has free variables before they remember its image for good. Off, they
// take every node outside of binders for closed.
extern bool g_allow_free_vars; // default: true

} // namespace vexor
