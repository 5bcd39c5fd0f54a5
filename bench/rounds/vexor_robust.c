/* Unusual amounts through the lite interface: nesting N levels deep, N assertions, N pairs of push and pop, N
 * checks on one context. usage: vexor_robust nesting|assertions|pairs|checks N. Prints the answers' counts,
 * CPU seconds, and the resident memory in MB after 10 %, 50 % and 100 % of the rounds. */
#define _GNU_SOURCE
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>
#include <vexor_lite.h>

static void run(vexorl_context ctx, char const* text) {
    if (vexorl_read(ctx, text)) return;
    fprintf(stderr, "%s\n", vexorl_get_last_error_message());
    exit(1);
}

static double resident_mb(void) {
    unsigned long size = 0, resident = 0;
    FILE* f = fopen("/proc/self/statm", "r");
    if (f == NULL || fscanf(f, "%lu %lu", &size, &resident) != 2) return -1;
    fclose(f);
    return (double)resident * (double)sysconf(_SC_PAGESIZE) / 1e6;
}

static void report(unsigned i, unsigned n) {
    if (i == n / 10 || i == n / 2 || i == n) printf("%u rounds: %.1f MB\n", i, resident_mb());
}

static void nesting(vexorl_context ctx, unsigned n) {
    char* const text = malloc(20 * (size_t)n + 100);
    char* end = text + sprintf(text, "(define p::bool) (define q::bool) (define r::bool) (assert ");
    for (unsigned i = 0; i < n; ++i)
        end += sprintf(end, "%s", i % 3 == 0 ? "(or p " : i % 3 == 1 ? "(and q " : "(not ");
    end += sprintf(end, "r");
    for (unsigned i = 0; i < n; ++i) *end++ = ')';
    strcpy(end, ") (check)");
    run(ctx, text);
    free(text);
    report(n, n);
}

static void assertions(vexorl_context ctx, unsigned n) {
    char text[200];
    run(ctx, "(define v0::bool)");
    for (unsigned i = 1; i <= n; ++i) {
        sprintf(text, "(define v%u::bool) (assert (or v%u (and v%u (not v%u))))", i, i, i / 2, i - 1);
        run(ctx, text);
        report(i, n);
    }
    run(ctx, "(check)");
}

static void pairs(vexorl_context ctx, unsigned n) {
    char text[300];
    run(ctx, "(define a::bool) (define b::bool) (assert (or a b))");
    for (unsigned i = 1; i <= n; ++i) {
        sprintf(text,
                "(push) (define c%u::bool) (assert (or (and a c%u) (= b (not c%u)))) (assert+ (not a)) (pop)",
                i, i, i);
        run(ctx, text);
        report(i, n);
    }
    run(ctx, "(check)");
}

static void checks(vexorl_context ctx, unsigned n) {
    char text[100];
    for (unsigned i = 0; i < 50; ++i) {
        sprintf(text, "(define v%u::bool)", i);
        run(ctx, text);
    }
    unsigned state = 1;
    for (unsigned i = 0; i < 150; ++i) {
        unsigned v[3];
        for (unsigned k = 0; k < 3; ++k) v[k] = (state = state * 1103515245 + 12345) >> 16;
        sprintf(text, "(assert (or v%u (not v%u) v%u))", v[0] % 50, v[1] % 50, v[2] % 50);
        run(ctx, text);
    }
    for (unsigned i = 1; i <= n; ++i) {
        run(ctx, "(check)");
        report(i, n);
    }
}

int main(int argc, char** argv) {
    if (argc != 3) return 1;
    unsigned const n = (unsigned)atoi(argv[2]);
    char const* const mode = argv[1];
    char name[] = "/tmp/vexor-robust-XXXXXX";
    if (mkstemp(name) < 0) return 1;
    vexorl_set_output_file(name);
    vexorl_context ctx = vexorl_mk_context();
    clock_t const start = clock();
    if (strcmp(mode, "nesting") == 0) nesting(ctx, n);
    if (strcmp(mode, "assertions") == 0) assertions(ctx, n);
    if (strcmp(mode, "pairs") == 0) pairs(ctx, n);
    if (strcmp(mode, "checks") == 0) checks(ctx, n);
    double const seconds = (double)(clock() - start) / CLOCKS_PER_SEC;
    vexorl_del_context(ctx);
    unsigned sat = 0, unsat = 0;
    char line[256];
    FILE* const results = fopen(name, "r");
    while (results != NULL && fgets(line, sizeof line, results) != NULL) {
        sat += strcmp(line, "sat\n") == 0;
        unsat += strcmp(line, "unsat\n") == 0;
    }
    remove(name);
    printf("%s %u: sat %u unsat %u, %.2f s\n", mode, n, sat, unsat, seconds);
    return 0;
}
