// Fixnum fast paths, the way into bignums and the entry to the deep stack.
#include <benchmark/benchmark.h>

#include <vector>

#include "base/arena.h"
#include "base/deep_stack.h"
#include "base/hash_table.h"
#include "base/numeral_ext.h"
#include "base/ustring.h"

namespace {

using vexor::numeral;
using vexor::numeral_ext;

std::vector<numeral> integers(int factor) {
    std::vector<numeral> result;
    for (int i = 0; i < 256; i++) result.emplace_back((i * 7919 % 1009 - 500) * factor);
    return result;
}

std::vector<numeral> fractions() {
    std::vector<numeral> result;
    for (int i = 0; i < 256; i++) result.push_back(numeral(i * 7919 % 1009 - 500) / (i % 13 + 2));
    return result;
}

// a[i] op= b[i] on copies, so that the values stay in their class.
template <class Op>
void run(benchmark::State& state, std::vector<numeral> const& a, Op op) {
    for (auto _ : state) {
        for (std::size_t i = 0; i < a.size(); i++) {
            numeral x(a[i]);
            op(x, a[a.size() - 1 - i]);
            benchmark::DoNotOptimize(x);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(a.size()));
}

void add(numeral& a, numeral const& b) { a += b; }
void mul(numeral& a, numeral const& b) { a *= b; }
void div(numeral& a, numeral const& b) {
    if (!b.is_zero()) a /= b;
}
void less(numeral& a, numeral const& b) { benchmark::DoNotOptimize(a < b); }
void copy(numeral&, numeral const&) {}

void numeral_copy_fixnum(benchmark::State& state) { run(state, integers(1), copy); }
void numeral_add_integers(benchmark::State& state) { run(state, integers(1), add); }
void numeral_mul_integers(benchmark::State& state) { run(state, integers(1), mul); }
void numeral_less_integers(benchmark::State& state) { run(state, integers(1), less); }
void numeral_add_fractions(benchmark::State& state) { run(state, fractions(), add); }
void numeral_mul_fractions(benchmark::State& state) { run(state, fractions(), mul); }
void numeral_div_fractions(benchmark::State& state) { run(state, fractions(), div); }
void numeral_less_fractions(benchmark::State& state) { run(state, fractions(), less); }

std::vector<numeral> bignums() {
    std::vector<numeral> result = integers(1);
    for (numeral& a : result) a *= numeral(3).expt(50);
    return result;
}
void numeral_copy_bignum(benchmark::State& state) { run(state, bignums(), copy); }
void numeral_add_bignums(benchmark::State& state) { run(state, bignums(), add); }
void numeral_mul_bignums(benchmark::State& state) { run(state, bignums(), mul); }
void numeral_add_leaves_the_range(benchmark::State& state) {
    std::vector<numeral> a(256, numeral(numeral::max_fixnum));
    run(state, a, add);
}

void numeral_ext_row_update(benchmark::State& state) {
    numeral_ext x(3, 1);
    numeral c = numeral(2) / 3;
    for (auto _ : state) {
        numeral_ext y(x);
        y *= c;
        y += x;
        benchmark::DoNotOptimize(y);
    }
}

void scoped_arena_scope(benchmark::State& state) {
    vexor::scoped_arena a(8192);
    for (auto _ : state) {
        a.begin_scope();
        benchmark::DoNotOptimize(a.allocate(40));
        a.end_scope(false);
    }
}

void deep_stack_outermost_call(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) benchmark::DoNotOptimize(vexor::on_deep_stack([&] { return ++n; }));
}

void hash_map_hit(benchmark::State& state) {
    vexor::hash_map<int, int, vexor::int_hash> m;
    for (int i = 0; i < 10000; i++) m.insert(i * 16, i);
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(m.find((i++ % 10000) * 16));
    }
}

void ustring_known_name(benchmark::State& state) {
    vexor::ustring("a_name_of_usual_length");
    for (auto _ : state) benchmark::DoNotOptimize(vexor::ustring("a_name_of_usual_length"));
}

BENCHMARK(numeral_copy_fixnum);
BENCHMARK(numeral_add_integers);
BENCHMARK(numeral_mul_integers);
BENCHMARK(numeral_less_integers);
BENCHMARK(numeral_add_fractions);
BENCHMARK(numeral_mul_fractions);
BENCHMARK(numeral_div_fractions);
BENCHMARK(numeral_less_fractions);
BENCHMARK(numeral_copy_bignum);
BENCHMARK(numeral_add_bignums);
BENCHMARK(numeral_mul_bignums);
BENCHMARK(numeral_add_leaves_the_range);
BENCHMARK(numeral_ext_row_update);
BENCHMARK(scoped_arena_scope);
BENCHMARK(deep_stack_outermost_call);
BENCHMARK(hash_map_hit);
BENCHMARK(ustring_known_name);

} // namespace

BENCHMARK_MAIN();
