// The names and scopes of a manager, replaced as a whole by its reset.
#pragma once

#include "ast/node/decl.h"
#include "base/hash_table.h"
#include "base/shared_ptr.h"
#include "base/vector.h"

namespace vexor {

class ast_manager_imp {
public:
    using const_table = hash_map<ustring, const_decl*, hash_ustring>;
    using type_table = hash_map<ustring, type_decl*, hash_ustring>;

    // Takes the newest declaration and its name away.
    void forget_last_decl();
    // The name of a constant stays until reset, and so does all it points to.
    void keep_beyond_scopes(const_decl* d);

    const_table m_const_decls;       // constants and functions with a name
    type_table m_type_decls;         // types with a name
    shared_ptr_vector<decl> m_decls; // owned declarations in scope, newest last
    svector<unsigned> m_scopes;      // size of m_decls at each push
    shared_ptr_vector<ast> m_kept;   // constants that are not owned, and the types they belong to
};

} // namespace vexor
