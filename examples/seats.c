/* Seats in a train, by Max-SAT, with a callback that shows the progress and stops the search.
 *
 * Eleven passengers, ten seats, each passenger wants one. Ten of them can have it: the least cost is 1, as
 * everyone sees at once. A search that only combines clauses needs enormous time to see it: it would have to
 * prove that eleven do not fit. So the callback stops it as soon as the cost is 1.
 *
 *     cc seats.c $(pkg-config --cflags --libs vexor)
 */
#include <stdio.h>

#include <vexor.h>

enum { passengers = 11, seats = 10, least_cost = passengers - seats };

static vexor_context ctx;
static vexor_expr sits[passengers][seats];

static void assert_problem(void) {
    int p, q, s;
    for (p = 0; p < passengers; ++p)
        for (s = 0; s < seats; ++s) sits[p][s] = vexor_mk_fresh_bool_var(ctx);
    /* Nobody sits on another one's lap. */
    for (s = 0; s < seats; ++s) {
        for (p = 0; p < passengers; ++p) {
            for (q = p + 1; q < passengers; ++q) {
                vexor_expr one_stands[2];
                one_stands[0] = vexor_mk_not(ctx, sits[p][s]);
                one_stands[1] = vexor_mk_not(ctx, sits[q][s]);
                vexor_assert(ctx, vexor_mk_or(ctx, one_stands, 2));
            }
        }
    }
    for (p = 0; p < passengers; ++p) vexor_assert_weighted(ctx, vexor_mk_or(ctx, sits[p], seats), 1);
}

/* Called every 5000 conflicts: 0 ends the search. */
static int progress(search_data* data) {
    if (data->model_available)
        fprintf(stderr, "%d conflicts, cost %ld\n", data->conflicts, (long)data->cost);
    else
        fprintf(stderr, "%d conflicts, no model yet\n", data->conflicts);
    return !data->model_available || data->cost > least_cost;
}

int main(void) {
    vexor_model m;
    int p, s, number = 0;
    ctx = vexor_mk_context();
    assert_problem();
    vexor_set_search_callback(ctx, progress);
    vexor_max_sat(ctx); /* 0 after a stop: the model is the best so far */
    vexor_remove_search_callback(ctx);
    m = vexor_get_model(ctx);
    if (!m) {
        printf("no model\n");
        return 1;
    }
    for (p = 0; p < passengers; ++p) {
        int has_seat = 0;
        for (s = 0; s < seats; ++s) has_seat |= vexor_evaluate_in_model(m, sits[p][s]) == 1;
        number += has_seat;
    }
    printf("%d of %d passengers sit, at cost %ld\n", number, passengers, (long)vexor_get_cost(m));
    vexor_del_context(ctx);
    return 0;
}
