// Reader of CNF and weighted CNF files in the DIMACS format.
#pragma once

#include <iosfwd>
#include <string>

#include "base/vector.h"
#include "frontend/text_source.h"
#include "search/literal.h"

namespace vexor {

class context;

// Weights from this one on make a clause hard, where the file's header does not say otherwise; see
// cnf_parser::hard_weight.
extern int g_max_weight;
void set_dimacs_max_weight(int weight);

// Reads a DIMACS file into the context, up to the end of the stream, and propagates what it asserted; the
// caller tests inconsistent(). Variable k of the file is Boolean variable k - 1 + n, n being the number of
// variables that exist when the header is read, that is k + 2 in a new context. With max_sat each clause of
// less than the limiting weight may be switched off at the price of its weight; without it weights are read
// and ignored.
//
// Throws cnf_exception for a malformed file; the clauses before the error stay asserted.
void read_dimacs(context* ctx, std::istream& in, char const* file_name, bool max_sat);
void read_dimacs(context* ctx, char const* file_name, bool max_sat);

// Receives what a DIMACS file states, in the order of the file.
class cnf_sink {
public:
    virtual ~cnf_sink() = default;

    // How many variables exist before the next header; the header's first variable gets this number.
    [[nodiscard]] virtual int num_vars() const = 0;
    virtual void create_vars(int count) = 0;
    virtual void add_hard_clause(svector<literal> const& literals) = 0;
    // May change the literals.
    virtual void add_soft_clause(svector<literal>& literals, long weight) = 0;
};

// One read of one file.
//
// Promises: everything before the first error was delivered, nothing behind it; the time is linear in the
// length of the input, and the memory is that of the longest clause and one block.
class cnf_parser {
public:
    // More variables than this do not fit the words of the search, with room for those the search makes
    // itself.
    static constexpr int max_vars = 1 << 26;

    cnf_parser(cnf_sink& sink, std::istream& in, char const* file_name, bool max_sat);
    void read();

private:
    void read_header();
    long read_top();
    void read_clause();
    void read_weight();
    long read_number(char const* expected);
    [[nodiscard]] bool is_soft() const;
    [[nodiscard]] long hard_weight() const;
    [[noreturn]] void fail(std::string const& reason) const;
    [[noreturn]] void fail_range(long number) const;
    [[nodiscard]] std::string found() const;

    cnf_sink& m_sink;            // destination
    text_source m_source;        // the characters
    char const* m_file_name;     // for the exception
    bool m_seen_header = false;  // a header was read
    int m_num_vars = 0;          // from the last header, 0 before the first
    int m_first_var = 0;         // the Boolean variable of the file's variable 1
    bool m_max_sat;              // weights make soft clauses
    bool m_weighted = false;     // each clause starts with its weight
    long m_top = 0;              // the weight of hard clauses by the header, 0 if it gives none
    long m_weight = 1;           // of the clause being read
    svector<literal> m_literals; // of the clause being read
};

} // namespace vexor
