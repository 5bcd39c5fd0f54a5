// Random sequences of calls against a naive model, and their logs against their own replays.
#include "api_driver.h"
#include "log_replay.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sstream>

namespace vexor_test {

// The first step tells how many contexts there are; each step names the one that it is for.
std::string play(api_sequence const& sequence) {
    std::vector<std::unique_ptr<modelled_context>> contexts;
    if (sequence.empty()) return "";
    for (unsigned n = sequence[0].m_c % 8 == 0 ? 2 : 1; n > 0; --n)
        contexts.push_back(std::make_unique<modelled_context>());
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        modelled_context& ctx = *contexts[sequence[i].m_c / 64 % contexts.size()];
        std::string difference;
        try {
            difference = ctx.play(sequence[i]);
        } catch (std::exception const& e) {
            difference = std::string("exception: ") + e.what();
        }
        for (auto const& c : contexts) c->note_log(c.get() == &ctx);
        if (!difference.empty()) return "step " + std::to_string(i) + ": " + difference;
    }
    for (auto const& ctx : contexts) {
        std::string const difference = ctx->compare_replay();
        if (!difference.empty()) return difference;
    }
    return "";
}

api_sequence random_sequence(random_stream& random) {
    api_sequence result;
    unsigned const bias = random.below(4); // some sequences have many scopes, some many weights
    for (unsigned n = 5 + random.below(70); n > 0; --n) {
        auto number = [&] { return static_cast<unsigned>(random.next() >> 40); };
        api_step step{number(), number(), number(), number()};
        if (bias == 1 && random.chance(20)) step.m_op = 9 + random.below(3);
        if (bias == 2 && random.chance(30)) {
            step.m_op = random.chance(70) ? 5 : 12;
            if (step.m_op == 5) step.m_b = 2;
        }
        if (n > 60 && random.chance(50)) step.m_op = random.below(5);
        result.push_back(step);
    }
    return result;
}

// Leaves out ever smaller pieces as long as something goes wrong.
api_sequence shrink(api_sequence sequence) {
    for (std::size_t piece = sequence.size(); piece > 0; piece /= 2)
        for (bool again = true; again;) {
            again = false;
            for (std::size_t i = 0; i < sequence.size();) {
                api_sequence shorter(sequence.begin(), sequence.begin() + static_cast<std::ptrdiff_t>(i));
                std::size_t const end = std::min(i + piece, sequence.size());
                shorter.insert(shorter.end(), sequence.begin() + static_cast<std::ptrdiff_t>(end),
                               sequence.end());
                if (!shorter.empty() && !play(shorter).empty()) {
                    sequence = shorter;
                    again = true;
                } else {
                    i = end;
                }
            }
        }
    return sequence;
}

std::string describe(api_sequence const& sequence) {
    std::size_t const start = log_size();
    std::ostringstream out;
    out << play(sequence) << "\nsteps:";
    for (api_step const& s : sequence)
        out << " {" << s.m_op << "u, " << s.m_a << "u, " << s.m_b << "u, " << s.m_c << "u}";
    out << "\nlog:\n" << log_since(start);
    return out.str();
}

namespace {

std::uint64_t current_seed = 0;

// The seed of a sequence that ends the process.
extern "C" void tell_seed(int) {
    std::fprintf(stderr, "VEXOR_SEED=%llu\n", (unsigned long long)current_seed);
}

#ifdef __SANITIZE_ADDRESS__
constexpr unsigned num_sequences = 5000;
#else
constexpr unsigned num_sequences = 6000;
#endif

TEST(random_calls, agree_with_a_naive_model) {
    std::uint64_t const seed = first_seed(1);
    auto const old_handler = std::signal(SIGABRT, tell_seed);
    for (unsigned i = 0; i < rounds(num_sequences); ++i) {
        current_seed = seed + i;
        random_stream random(current_seed);
        api_sequence const sequence = random_sequence(random);
        std::string const difference = play(sequence);
        ASSERT_EQ(difference, "") << "VEXOR_SEED=" << current_seed
                                  << " VEXOR_ROUNDS=0.001\nshrunk: " << describe(shrink(sequence));
    }
    std::signal(SIGABRT, old_handler);
}

} // namespace

} // namespace vexor_test
