// Plays sequences of calls of the full interface beside a naive model of what they mean.
//
// A sequence is a list of steps whose numbers are taken modulo what there is to choose from: each part of a
// legal sequence is a legal sequence, which makes shrinking easy.
#pragma once

#include "api_context.h"
#include "support/random.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vexor_test {

struct api_step {
    unsigned m_op, m_a, m_b, m_c;
};
using api_sequence = std::vector<api_step>;

api_sequence random_sequence(random_stream& random);

// What is known of one context: formulas as truth tables over at most eight variables.
class modelled_context {
public:
    modelled_context();

    // Makes the calls of one step and compares. The answer is empty, or tells the first difference.
    std::string play(api_step const& step);
    // The log of its calls, executed, gives the same answers.
    std::string compare_replay() const;
    [[nodiscard]] std::string const& log() const { return m_log; }
    // After each step: what was logged since the last one is for this context, or is not.
    void note_log(bool is_own);

private:
    static constexpr unsigned max_vars = 8;
    using table = std::bitset<1u << max_vars>; // bit v is the truth under valuation v
    __extension__ using cost_type = __int128;

    struct term {
        vexor_expr m_expr;
        table m_table;
    };
    struct variable {
        std::string m_name;
        unsigned m_bit; // its place in valuations
    };
    enum class kind { plain, retractable, weighted };
    struct assertion {
        kind m_kind;
        table m_table;
        vexor_int64 m_weight;
        assertion_id m_id;
        bool m_retracted = false;
    };
    struct scope {
        std::size_t m_num_terms, m_num_vars, m_num_assertions, m_num_retractions;
    };
    struct answer {
        bool m_is_max_sat;
        lbool m_answer;
        vexor_int64 m_cost;
    };

    // --- Steps.
    std::string declare(api_step const& step);
    std::string declare_fresh();
    std::string make_term(api_step const& step);
    std::string assert_term(api_step const& step);
    std::string retract(api_step const& step);
    std::string push();
    std::string pop();
    std::string reset();
    std::string check();
    std::string max_sat(api_step const& step);
    std::string find_weighted_model(api_step const& step);
    std::string ask_model(api_step const& step);
    std::string walk();
    std::string fail(api_step const& step);

    // --- The naive model.
    term const& choose(unsigned n) const { return m_terms[n % m_terms.size()]; }
    void add_variable(std::string const& name, vexor_expr use);
    // Valuations that satisfy the plain and retractable assertions, with all weighted ones or without.
    [[nodiscard]] table models(bool with_weighted) const;
    [[nodiscard]] cost_type cost_of(unsigned valuation) const;
    [[nodiscard]] cost_type least_cost(table const& valuations) const;
    std::string compare_core();
    // The valuations that the model leaves possible.
    std::string read_model(table& possible);
    // The model pays for what it does not satisfy.
    std::string compare_cost(bool is_best);
    std::string compare_inconsistent();

    api_context m_ctx;
    std::vector<term> m_terms;
    std::vector<variable> m_vars;
    std::vector<assertion> m_assertions;
    std::vector<std::size_t> m_retractions; // assertions, in order
    std::vector<scope> m_scopes;
    unsigned m_num_fresh = 0;
    bool m_has_model = false;
    std::string m_log;
    std::size_t m_log_start = 0;
    std::vector<answer> m_answers;   // of the questions that are logged
    std::vector<assertion_id> m_ids; // of all assertions with id; 0 if the context may be dead
};

// Plays a sequence on new contexts, replays their logs. Empty, or the first difference.
std::string play(api_sequence const& sequence);

// A short sequence that fails like the given one.
api_sequence shrink(api_sequence sequence);

// The steps and the log of a sequence.
std::string describe(api_sequence const& sequence);

} // namespace vexor_test
