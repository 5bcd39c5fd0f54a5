#include "search/def_table.h"

#include "ast/node/nodes.h"

namespace vexor {

unsigned decl_hash(var_decl const* decl) { return decl->get_id(); }

} // namespace vexor
