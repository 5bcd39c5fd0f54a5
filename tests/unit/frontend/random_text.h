// Random texts in the native language, each together with the text that its printed form must be.
#pragma once

#include <string>
#include <vector>

#include "support/random.h"

namespace vexor_test {

// The printed form is derived here, apart from the printer: from how the language writes each construct.
class random_text {
public:
    struct term {
        std::string source;  // with spellings of all kinds
        std::string printed; // on one line
    };
    // The sorts of the constants that `world` declares.
    enum sort { boolean, integer, real, bits4, bits8, pair, record, function, scalar, list, num_sorts };
    static char const* const world;

    // ill_typed: how many of 100 subterms have a random sort instead of the fitting one.
    random_text(random_stream& random, unsigned ill_typed)
        : m_random(random)
        , m_ill_typed(ill_typed) {}

    term make(sort s, unsigned depth);
    sort random_sort() { return static_cast<sort>(m_random.below(num_sorts)); }

private:
    struct local {
        std::string name;
        sort s;
    };

    bool chance(unsigned percent) { return m_random.chance(percent); }
    std::string pick(std::vector<std::string> const& words) {
        return words[m_random.below(static_cast<unsigned>(words.size()))];
    }
    std::string space();
    term part(sort s, unsigned depth);
    term leaf(sort s);
    term name(sort s);
    term integer_literal();
    term real_literal();
    term bits_literal(unsigned size);
    term record_literal(unsigned depth);
    term form(std::string const& source_head, std::string const& printed_head,
              std::vector<term> const& parts);
    term form(std::string const& head, std::vector<term> const& parts) { return form(head, head, parts); }
    term compound(sort s, unsigned depth);
    term let(sort s, unsigned depth);
    term beta_redex(sort s, unsigned depth);
    term boolean_form(unsigned depth);
    term quantified(unsigned depth);
    term arithmetic_form(sort s, unsigned depth);
    term bits4_form(unsigned depth);
    term bits8_form(unsigned depth);
    term bits_form(sort s, unsigned depth);
    term selection(sort s, unsigned depth);
    term updated_function(unsigned depth);
    term plain(std::string const& text) { return {text, text}; }

    random_stream& m_random;
    unsigned m_ill_typed;
    std::vector<local> m_locals; // in scope, innermost last
};

} // namespace vexor_test
