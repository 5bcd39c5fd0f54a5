/* C between two C++ frames: the exception of a refused assertion passes through. */
#include "rules.h"

void declare_twice(vexor_context ctx, const char* name) {
    vexor_mk_bool_var_decl(ctx, name);
    vexor_mk_bool_var_decl(ctx, name);
}
