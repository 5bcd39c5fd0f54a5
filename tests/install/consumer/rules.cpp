// A user's program in C++, with a part in C and with numbers of GMP.
#include "rules.h"

#include <gmp.h>

#include <exception>
#include <iostream>

#include <vexor.h>

#ifndef __GNU_MP_VERSION
#error "gmp.h comes first"
#endif

int main() {
    vexor_context ctx = vexor_mk_context();
    try {
        declare_twice(ctx, "x");
        std::cout << "not refused\n";
    } catch (std::exception const& e) {
        std::cout << "refused: " << e.what() << "\n";
    }
    vexor_expr const x = vexor_mk_bool_var(ctx, "x");
    vexor_assert(ctx, x);
    std::cout << "answer " << vexor_check(ctx) << "\n";
    vexor_del_context(ctx);
    return 0;
}
