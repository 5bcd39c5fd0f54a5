#include "frontend/cnf_parser.h"

#include <ios>
#include <limits>

#include "base/exceptions.h"

namespace vexor {

namespace {

constexpr int default_max_weight = 1000000;
constexpr long number_overflow = std::numeric_limits<long>::max();

} // namespace

int g_max_weight = default_max_weight;

void set_dimacs_max_weight(int weight) { g_max_weight = weight; }

cnf_parser::cnf_parser(cnf_sink& sink, std::istream& in, char const* file_name, bool max_sat)
    : m_sink(sink)
    , m_source(in)
    , m_file_name(file_name)
    , m_max_sat(max_sat) {}

void cnf_parser::read() {
    try {
        m_source.advance();
        for (;;) {
            m_source.skip_space();
            int c = m_source.curr();
            if (c == text_source::end) return;
            if (c == 'c') {
                m_source.skip_line();
            } else if (c == 'p') {
                m_source.advance();
                read_header();
            } else {
                read_clause();
            }
        }
    } catch (std::ios_base::failure const& error) {
        fail(std::string("the file cannot be read: ") + error.code().message());
    }
}

// The line behind its "p". The word may be any that starts with "c" or "w", so that cnf, wcnf and count are
// accepted; behind the number of variables only the weight of hard clauses counts, and only in a weighted
// file.
void cnf_parser::read_header() {
    m_source.skip_space();
    int c = m_source.curr();
    if (c != 'w' && c != 'c') fail("expected 'cnf' or 'wcnf' behind 'p', found " + found());
    m_weighted = c == 'w';
    while (text_source::is_letter(m_source.curr())) m_source.advance();
    m_source.skip_space();
    long count = read_number("the number of variables");
    int existing = m_sink.num_vars();
    if (count > max_vars - existing) {
        fail("the header promises more variables than the " + std::to_string(max_vars) +
             " that are possible");
    }
    m_seen_header = true;
    m_num_vars = count > 0 ? static_cast<int>(count) : 0;
    m_first_var = existing;
    m_sink.create_vars(m_num_vars);
    m_top = m_weighted ? read_top() : 0;
    m_source.skip_line();
}

// The third number of the header's line, or 0. Whatever else stands there means nothing.
long cnf_parser::read_top() {
    for (int position = 0;; ++position) {
        while (m_source.curr() == ' ' || m_source.curr() == '\t') m_source.advance();
        if (!text_source::is_digit(m_source.curr())) return 0;
        long number = read_number("");
        if (position == 1) return number;
    }
}

void cnf_parser::read_clause() {
    m_weight = 1;
    if (m_weighted) read_weight();
    m_literals.reset();
    for (;;) {
        m_source.skip_space();
        long number = read_number("a literal or the 0 that ends a clause");
        if (number == 0) break;
        long var = number < 0 ? -number : number;
        if (var > m_num_vars) fail_range(number);
        m_literals.push_back(literal(m_first_var + static_cast<int>(var) - 1, number < 0));
    }
    if (is_soft()) {
        m_sink.add_soft_clause(m_literals, m_weight);
    } else {
        m_sink.add_hard_clause(m_literals);
    }
}

// Weight 0 is right, if pointless: files have such clauses, and they cost nothing.
void cnf_parser::read_weight() {
    m_weight = read_number("a weight");
    if (m_weight < 0) fail("a weight must not be negative, found " + std::to_string(m_weight));
    if (m_weight == number_overflow) fail("the weight is too large");
}

// An optional sign and decimal digits. Numbers that do not fit are cut to the greatest one, which every
// caller refuses, so that no digit string can pass for another number.
long cnf_parser::read_number(char const* expected) {
    bool negative = m_source.curr() == '-';
    if (negative || m_source.curr() == '+') m_source.advance();
    if (!text_source::is_digit(m_source.curr()))
        fail(std::string("expected ") + expected + ", found " + found());
    long value = 0;
    do {
        int digit = m_source.curr() - '0';
        value = value > (number_overflow - digit) / 10 ? number_overflow : value * 10 + digit;
        m_source.advance();
    } while (text_source::is_digit(m_source.curr()));
    return negative ? -value : value;
}

bool cnf_parser::is_soft() const { return m_max_sat && m_weight < hard_weight(); }

// The least weight of a hard clause. A limit that the caller has set always counts; the general one only
// where the header gives no weight for hard clauses, since soft clauses may well cost more than it.
long cnf_parser::hard_weight() const {
    if (m_top <= 0) return g_max_weight;
    if (g_max_weight == default_max_weight) return m_top;
    return m_top < g_max_weight ? m_top : g_max_weight;
}

void cnf_parser::fail(std::string const& reason) const {
    throw cnf_exception(m_file_name, m_source.line(), reason);
}

void cnf_parser::fail_range(long number) const {
    if (!m_seen_header) fail("a clause stands before the header");
    bool cut = number == number_overflow || number == -number_overflow;
    fail("the literal " + (cut ? std::string("read") : std::to_string(number)) + " exceeds the " +
         std::to_string(m_num_vars) + " variables of the header");
}

// What stands at the current place, for messages.
std::string cnf_parser::found() const {
    int c = m_source.curr();
    if (c == text_source::end) return "the end of the file";
    if (c == '\n') return "the end of the line";
    if (c >= ' ' && c < 127) return std::string("'") + static_cast<char>(c) + "'";
    return "the byte " + std::to_string(c);
}

} // namespace vexor
