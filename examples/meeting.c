/* A day for a meeting, by unsatisfiable cores: whose wishes contradict each other, and what if one of them
 * gives in?
 *
 * Ann cannot on Mondays and Thursdays, Bob not on Tuesdays and Thursdays, Cid not on Wednesdays and Fridays,
 * Dora not on Fridays. That leaves no day. Only Ann excludes Monday, only Bob Tuesday, only Cid Wednesday,
 * and these three together exclude Thursday and Friday too: exactly their wishes are to blame. If Ann gives
 * in there is Monday, if Bob does Tuesday, and if Cid does Wednesday, since Dora still excludes Friday.
 *
 *     cc meeting.c $(pkg-config --cflags --libs vexor)
 */
#include <stdio.h>

#include <vexor.h>

enum { days = 5, people = 4 };
static const char* const day_names[days] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};
static const char* const person_names[people] = {"Ann", "Bob", "Cid", "Dora"};
/* The two days on which each of them cannot. */
static const int busy[people][2] = {{0, 3}, {1, 3}, {2, 4}, {4, 4}};

static vexor_context ctx;
static vexor_expr day[days];
static assertion_id wish[people];

static void assert_exactly_one_day(void) {
    int i, k;
    for (i = 0; i < days; ++i) day[i] = vexor_mk_bool_var(ctx, day_names[i]);
    vexor_assert(ctx, vexor_mk_or(ctx, day, days));
    for (i = 0; i < days; ++i) {
        for (k = i + 1; k < days; ++k) {
            vexor_expr both[2];
            both[0] = day[i];
            both[1] = day[k];
            vexor_assert(ctx, vexor_mk_not(ctx, vexor_mk_and(ctx, both, 2)));
        }
    }
}

static void assert_wishes(void) {
    int p;
    for (p = 0; p < people; ++p) {
        vexor_expr neither[2];
        neither[0] = vexor_mk_not(ctx, day[busy[p][0]]);
        neither[1] = vexor_mk_not(ctx, day[busy[p][1]]);
        wish[p] = vexor_assert_retractable(ctx, vexor_mk_and(ctx, neither, 2));
    }
}

static int is_among(assertion_id id, const assertion_id ids[], unsigned n) {
    while (n > 0)
        if (ids[--n] == id) return 1;
    return 0;
}

/* Leaves out of a core what it does not need: the assertion without which the others are contradictory still.
 * What is retracted in a scope is back after its pop. */
static unsigned shrink(assertion_id core[], unsigned n) {
    unsigned candidate = 0, i;
    while (candidate < n) {
        lbool answer;
        vexor_push(ctx);
        for (i = 0; i < people; ++i)
            if (!is_among(wish[i], core, n) || wish[i] == core[candidate]) vexor_retract(ctx, wish[i]);
        answer = vexor_check(ctx);
        vexor_pop(ctx);
        if (answer == -1)
            core[candidate] = core[--n];
        else
            ++candidate;
    }
    return n;
}

static void print_day(void) {
    vexor_model m = vexor_get_model(ctx);
    int i;
    for (i = 0; i < days; ++i)
        if (vexor_evaluate_in_model(m, day[i]) == 1) printf(" %s", day_names[i]);
    printf("\n");
}

int main(void) {
    assertion_id core[people];
    unsigned n;
    int p;
    ctx = vexor_mk_context();
    assert_exactly_one_day();
    assert_wishes();
    if (vexor_check(ctx) != -1) {
        printf("there is a day\n");
        return 1;
    }
    n = shrink(core, vexor_get_unsat_core(ctx, core, people));
    printf("no day suits the wishes of");
    for (p = 0; p < people; ++p)
        if (is_among(wish[p], core, n)) printf(" %s", person_names[p]);
    printf("\n");
    for (p = 0; p < people; ++p) {
        if (!is_among(wish[p], core, n)) continue;
        vexor_push(ctx);
        vexor_retract(ctx, wish[p]);
        printf("if %s gives in:", person_names[p]);
        if (vexor_check(ctx) == 1) print_day();
        vexor_pop(ctx);
    }
    vexor_del_context(ctx);
    return 0;
}
