/* Incremental use through the lite interface: rounds of push, assert, check, pop. Prints the two answers'
 * counts and the CPU seconds for the base and for the rounds. */
#define _GNU_SOURCE
#include "rounds.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <vexor_lite.h>

static char g_text[1 << 16];
static unsigned g_size;

static void add_literal(unsigned l) {
    g_size += (unsigned)sprintf(g_text + g_size, (l & 1) ? " (not v%u)" : " v%u", l >> 1);
}

static void add(char const* text) { g_size += (unsigned)sprintf(g_text + g_size, "%s", text); }

static void add_clause(unsigned size) {
    add("(or");
    for (unsigned i = 0; i < size; ++i) add_literal(draw_literal());
    add(")");
}

static void run(vexorl_context ctx) {
    g_text[g_size] = 0;
    if (!vexorl_read(ctx, g_text)) {
        fprintf(stderr, "%s\n", vexorl_get_last_error_message());
        exit(1);
    }
    g_size = 0;
}

static double seconds(void) { return (double)clock() / CLOCKS_PER_SEC; }

int main(int argc, char** argv) {
    unsigned const rounds = argc > 1 ? (unsigned)atoi(argv[1]) : 10000;
    char name[] = "/tmp/vexor-rounds-XXXXXX";
    if (mkstemp(name) < 0) return 1;
    vexorl_set_output_file(name);
    double const start = seconds();
    vexorl_context ctx = vexorl_mk_context();
    for (unsigned i = 0; i < NUM_VARS; ++i) {
        g_size = (unsigned)sprintf(g_text, "(define v%u::bool)", i);
        run(ctx);
    }
    for (unsigned i = 0; i < NUM_CLAUSES; ++i) {
        add("(assert ");
        add_clause(3);
        add(")");
        run(ctx);
    }
    add("(check)");
    run(ctx);
    double const base = seconds();
    for (unsigned i = 0; i < rounds; ++i) {
        add("(push) (assert (and ");
        add_clause(2);
        add_clause(2);
        add("(=");
        add_literal(draw_literal());
        add_literal(draw_literal());
        add("))) (check) (pop)");
        run(ctx);
    }
    double const end = seconds();
    vexorl_del_context(ctx);

    unsigned sat = 0, unsat = 0;
    FILE* results = fopen(name, "r");
    char line[256];
    while (results != NULL && fgets(line, sizeof line, results) != NULL) {
        sat += strcmp(line, "sat\n") == 0;
        unsat += strcmp(line, "unsat\n") == 0;
    }
    remove(name);
    printf("sat %u unsat %u base %.3f rounds %.3f\n", sat, unsat, base - start, end - base);
    return 0;
}
