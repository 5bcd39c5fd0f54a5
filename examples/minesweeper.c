/* Minesweeper by incremental search: which covered cells are safe, which hold a mine, and which cannot be
 * told?
 *
 * The board, # being a covered cell and a digit the number of mines around it:
 *
 *     ######
 *     1121##
 *
 * The two cells above and beside the first 1 hold one mine, and the second 1 sees them too: the third cell of
 * the upper row is safe. So the 2 has its mines in the second and the fourth, the first is safe, and the last
 * 1 has its mine in the fourth: the fifth cells of both rows are safe. Nothing is known of the last column.
 *
 * The board is asserted once. Each question is an assumption in a scope of its own, so that the solver keeps
 * all that it has learned of the board.
 *
 *     cc minesweeper.c $(pkg-config --cflags --libs vexor)
 */
#include <stdio.h>

#include <vexor.h>

enum { rows = 2, columns = 6 };
static const char* const board[rows] = {"######", "1121##"};

static vexor_context ctx;
static vexor_expr mine[rows][columns];

/* Exactly k of the n formulas hold. */
static vexor_expr exactly(int k, const vexor_expr formulas[], int n) {
    if (k < 0 || k > n) return vexor_mk_false(ctx);
    if (n == 0) return vexor_mk_true(ctx);
    return vexor_mk_ite(ctx, formulas[0], exactly(k - 1, formulas + 1, n - 1),
                        exactly(k, formulas + 1, n - 1));
}

static void assert_board(void) {
    int r, c, i, k;
    for (r = 0; r < rows; ++r)
        for (c = 0; c < columns; ++c) mine[r][c] = vexor_mk_fresh_bool_var(ctx);
    for (r = 0; r < rows; ++r) {
        for (c = 0; c < columns; ++c) {
            vexor_expr around[8];
            int n = 0;
            if (board[r][c] == '#') continue;
            vexor_assert(ctx, vexor_mk_not(ctx, mine[r][c]));
            for (i = r - 1; i <= r + 1; ++i)
                for (k = c - 1; k <= c + 1; ++k)
                    if (i >= 0 && i < rows && k >= 0 && k < columns && (i != r || k != c))
                        around[n++] = mine[i][k];
            vexor_assert(ctx, exactly(board[r][c] - '0', around, n));
        }
    }
}

/* Whether the board allows the assumption. */
static int is_possible(vexor_expr assumption) {
    lbool answer;
    vexor_push(ctx);
    vexor_assert(ctx, assumption);
    answer = vexor_check(ctx);
    vexor_pop(ctx);
    return answer == 1;
}

int main(void) {
    int r, c;
    ctx = vexor_mk_context();
    assert_board();
    if (vexor_check(ctx) != 1) {
        printf("there is no such board\n");
        return 1;
    }
    for (r = 0; r < rows; ++r) {
        for (c = 0; c < columns; ++c) {
            if (board[r][c] != '#')
                putchar(board[r][c]);
            else if (!is_possible(mine[r][c]))
                putchar('.');
            else if (!is_possible(vexor_mk_not(ctx, mine[r][c])))
                putchar('*');
            else
                putchar('?');
        }
        putchar('\n');
    }
    vexor_del_context(ctx);
    return 0;
}
