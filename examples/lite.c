/* Queens on a board, by the lite interface: commands are built as text, results go to standard output.
 *
 * n queens on a board of n by n squares, no two in one row, column or diagonal: possible for 1, impossible for 2 and 3,
 * possible for 4, 5 and 6.
 *
 *     cc lite.c -lvexor
 */
#include <stdio.h>
#include <stdlib.h>

#include <vexor_lite.h>

static vexorl_context ctx;

static void execute(const char* command) {
    if (vexorl_read(ctx, command)) return;
    fprintf(stderr, "%s\n", vexorl_get_last_error_message());
    exit(1);
}

static void place_queens(int n) {
    char command[4096];
    int r, c, i, k;
    for (r = 0; r < n; ++r) {
        for (c = 0; c < n; ++c) {
            sprintf(command, "(define q%d-%d::bool)", r, c);
            execute(command);
        }
    }
    /* A queen in each row; the false is there for a board of one square. */
    for (r = 0; r < n; ++r) {
        int length = sprintf(command, "(assert (or false");
        for (c = 0; c < n; ++c) length += sprintf(command + length, " q%d-%d", r, c);
        sprintf(command + length, "))");
        execute(command);
    }
    /* No two queens attack each other. */
    for (i = 0; i < n * n; ++i) {
        for (k = i + 1; k < n * n; ++k) {
            int rows = k / n - i / n, columns = abs(k % n - i % n);
            if (rows != 0 && columns != 0 && rows != columns) continue;
            sprintf(command, "(assert (not (and q%d-%d q%d-%d)))", i / n, i % n, k / n, k % n);
            execute(command);
        }
    }
}

int main(void) {
    int n;
    ctx = vexorl_mk_context();
    for (n = 1; n <= 6; ++n) {
        char title[64];
        sprintf(title, "(echo \"%d queens: \")", n);
        execute(title);
        execute("(push)");
        place_queens(n);
        /* The solver may know already that there is no way; then it has said so, and there is nothing to ask. */
        if (!vexorl_inconsistent(ctx)) execute("(check)");
        execute("(pop)");
    }
    /* A command that fails: the reason is at hand, and the context works on. */
    if (!vexorl_read(ctx, "(assert q0-0)")) {
        char command[1024];
        sprintf(command, "(echo \"no names are left: %s\\n\")", "q0-0 was defined in a scope");
        execute(command);
    }
    execute("(status)");
    vexorl_del_context(ctx);
    return 0;
}
