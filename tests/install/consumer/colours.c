/* A user's program in C: three neighbours and two colours, by the full and by the lite interface. */
#include <stdio.h>
#include <string.h>

#include <vexor.h>
#include <vexor_lite.h>

int main(void) {
    static const char* const names[] = {"red1", "red2", "red3"};
    vexor_context ctx = vexor_mk_context();
    vexorl_context lite = vexorl_mk_context();
    lbool two, three;
    vexor_expr red[3];
    int i;
    for (i = 0; i < 3; ++i) red[i] = vexor_mk_bool_var(ctx, names[i]);
    vexor_assert(ctx, vexor_mk_diseq(ctx, red[0], red[1]));
    vexor_assert(ctx, vexor_mk_diseq(ctx, red[1], red[2]));
    two = vexor_check(ctx);
    vexor_assert(ctx, vexor_mk_diseq(ctx, red[2], red[0]));
    three = vexor_check(ctx);
    printf("two edges %d, three edges %d\n", two, three);
    vexor_del_context(ctx);
    fflush(stdout);
    if (!vexorl_read(lite, "(define p::bool) (assert p) (check)")) return 1;
    vexorl_del_context(lite);
    return strcmp(vexor_version(), vexorl_version()) == 0 ? 0 : 1;
}
