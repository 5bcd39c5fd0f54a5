/* Builds terms call by call: the same ones with either library.
 *
 * terms NODES: that many applications of and, or, not and ite over 10,000 Boolean variables, their arguments
 * drawn at random from the variables and the nodes before. Compiled with -DPEER for the peer. Prints the
 * number of nodes; time and memory are for the caller to measure. */
#include <stdio.h>
#include <stdlib.h>

enum { NUM_VARS = 10000 };

#ifdef PEER
#include <z3.h>
typedef Z3_ast term;
static Z3_context ctx;

static void begin(void) {
    Z3_config config = Z3_mk_config();
    ctx = Z3_mk_context(config);
    Z3_del_config(config);
}
static term variable(const char* name) {
    return Z3_mk_const(ctx, Z3_mk_string_symbol(ctx, name), Z3_mk_bool_sort(ctx));
}
static term conjunction(term* args, unsigned n) { return Z3_mk_and(ctx, n, args); }
static term disjunction(term* args, unsigned n) { return Z3_mk_or(ctx, n, args); }
static term negation(term a) { return Z3_mk_not(ctx, a); }
static term choice(term a, term b, term c) { return Z3_mk_ite(ctx, a, b, c); }
static void end(void) { Z3_del_context(ctx); }
#else
#include <vexor.h>
typedef vexor_expr term;
static vexor_context ctx;

static void begin(void) { ctx = vexor_mk_context(); }
static term variable(const char* name) { return vexor_mk_bool_var(ctx, name); }
static term conjunction(term* args, unsigned n) { return vexor_mk_and(ctx, args, n); }
static term disjunction(term* args, unsigned n) { return vexor_mk_or(ctx, args, n); }
static term negation(term a) { return vexor_mk_not(ctx, a); }
static term choice(term a, term b, term c) { return vexor_mk_ite(ctx, a, b, c); }
static void end(void) { vexor_del_context(ctx); }
#endif

/* Knuth's linear congruential generator (MMIX): the same numbers everywhere. */
static unsigned random_below(unsigned n) {
    static unsigned long long state = 1;
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return (unsigned)((state >> 33) % n);
}

int main(int argc, char** argv) {
    unsigned const num_nodes = argc > 1 ? (unsigned)atoi(argv[1]) : 5000000;
    term* const terms = malloc((NUM_VARS + (size_t)num_nodes) * sizeof(term));
    unsigned num_terms;
    if (!terms) return 1;
    begin();
    for (num_terms = 0; num_terms < NUM_VARS; ++num_terms) {
        char name[16];
        snprintf(name, sizeof name, "x%u", num_terms);
        terms[num_terms] = variable(name);
    }
    while (num_terms < NUM_VARS + num_nodes) {
        term args[3];
        unsigned i;
        for (i = 0; i < 3; ++i) args[i] = terms[random_below(num_terms)];
        switch (random_below(4)) {
        case 0:
            terms[num_terms] = conjunction(args, 2 + random_below(2));
            break;
        case 1:
            terms[num_terms] = disjunction(args, 2 + random_below(2));
            break;
        case 2:
            terms[num_terms] = negation(args[0]);
            break;
        default:
            terms[num_terms] = choice(args[0], args[1], args[2]);
            break;
        }
        ++num_terms;
    }
    printf("%u nodes\n", num_terms);
    end();
    free(terms);
    return 0;
}
