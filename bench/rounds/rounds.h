/* The problem of the incremental benchmark, the same for every solver: a base of random clauses of three
 * literals, and for each round an assertion of two clauses of two literals and an equivalence. Seeded, so
 * that runs agree. */
#ifndef ROUNDS_H
#define ROUNDS_H

#include <stdint.h>

enum { NUM_VARS = 25000, NUM_CLAUSES = 50000 };

static uint64_t g_state = 12345;

/* Below n, from a multiplicative congruential stream (the upper bits are the better ones). */
static unsigned draw(unsigned n) {
    g_state = g_state * 6364136223846793005u + 1442695040888963407u;
    return (unsigned)((g_state >> 33) % n);
}

/* A variable and a sign: positive if bit 0 is 0. */
static unsigned draw_literal(void) { return draw(2 * NUM_VARS); }

#endif
