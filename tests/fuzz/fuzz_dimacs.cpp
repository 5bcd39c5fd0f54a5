// Arbitrary bytes as a DIMACS file. Reading must end in an exception or in clauses that are the same whatever
// pieces the stream delivers; small formulas are decided and compared with trying all assignments.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "base/exceptions.h"
#include "frontend/cnf_parser.h"
#include "search/context.h"
#include "support/check_model.h"

using namespace vexor;

namespace {

constexpr int max_decided_vars = 10;
constexpr std::size_t max_decided_clauses = 60;

void require(bool condition, char const* what) {
    if (condition) return;
    std::cerr << what << "\n";
    std::abort();
}

class recording_sink : public cnf_sink {
public:
    [[nodiscard]] int num_vars() const override { return first_bool_var + m_formula.num_vars; }
    void create_vars(int count) override { m_formula.num_vars += count; }
    void add_hard_clause(svector<literal> const& literals) override {
        std::vector<int> clause;
        for (literal l : literals) {
            int number = l.var() - first_bool_var + 1;
            require(number >= 1 && number <= m_formula.num_vars, "a literal out of range");
            clause.push_back(l.sign() ? -number : number);
        }
        m_formula.clauses.push_back(clause);
    }
    void add_soft_clause(svector<literal>& literals, long weight) override {
        require(weight >= 0, "a negative weight");
        add_hard_clause(literals);
        m_formula.clauses.back().push_back(0); // tells it from a hard one
    }

    vexor_test::plain_cnf m_formula;
    std::string m_error; // of the exception
};

class piecewise_buffer : public std::streambuf {
public:
    piecewise_buffer(std::string const& text, std::size_t piece)
        : m_text(text)
        , m_piece(piece) {}

protected:
    std::streamsize xsgetn(char* target, std::streamsize count) override {
        std::size_t size = std::min({m_piece, static_cast<std::size_t>(count), m_text.size() - m_position});
        m_text.copy(target, size, m_position);
        m_position += size;
        return static_cast<std::streamsize>(size);
    }

private:
    std::string const& m_text;
    std::size_t m_piece;
    std::size_t m_position = 0;
};

void read(recording_sink& sink, std::string const& text, std::size_t piece, bool max_sat) {
    piecewise_buffer buffer(text, piece);
    std::istream in(&buffer);
    try {
        cnf_parser(sink, in, "fuzz", max_sat).read();
    } catch (cnf_exception const& error) {
        sink.m_error = std::to_string(error.get_line()) + error.get_reason();
    }
}

void decide(vexor_test::plain_cnf const& formula, std::string const& text) {
    context ctx;
    std::istringstream in(text);
    read_dimacs(&ctx, in, "fuzz", false);
    int answer = ctx.check();
    require(answer == vexor_test::brute_force(formula), "a wrong answer");
    if (answer < 0) return;
    std::vector<int> values;
    for (int var = 1; var <= formula.num_vars; ++var) {
        values.push_back(ctx.get_model().value(first_bool_var + var - 1) * var);
    }
    require(vexor_test::check_model(formula, values).empty(), "a model that is none");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) return 0;
    bool max_sat = (data[0] & 1) != 0;
    std::string text(reinterpret_cast<char const*>(data) + 1, size - 1);
    recording_sink whole, pieces;
    read(whole, text, size, max_sat);
    read(pieces, text, 1 + data[0] % 7, max_sat);
    require(whole.m_error == pieces.m_error, "pieces change the error");
    require(whole.m_formula.clauses == pieces.m_formula.clauses, "pieces change the clauses");
    if (whole.m_error.empty() && !max_sat && whole.m_formula.num_vars <= max_decided_vars &&
        whole.m_formula.clauses.size() <= max_decided_clauses) {
        decide(whole.m_formula, text);
    }
    return 0;
}
