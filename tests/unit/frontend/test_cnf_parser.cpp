// The DIMACS reader alone: what it delivers for each input, recorded as text.
#include <gtest/gtest.h>

#include <sstream>
#include <streambuf>
#include <string>

#include "base/exceptions.h"
#include "frontend/cnf_parser.h"
#include "support/random.h"

using namespace vexor;

namespace {

// Writes down everything: "v3" for three variables, "(1 -2)" for a clause, "[10: 1 -2]" for a soft one.
// Variables are printed in the numbering of the context, less 2.
class recording_sink : public cnf_sink {
public:
    explicit recording_sink(int existing)
        : m_num_vars(existing) {}

    [[nodiscard]] int num_vars() const override { return m_num_vars; }
    void create_vars(int count) override {
        m_num_vars += count;
        m_text += "v" + std::to_string(count);
    }
    void add_hard_clause(svector<literal> const& literals) override {
        m_text += "(" + text_of(literals) + ")";
    }
    void add_soft_clause(svector<literal>& literals, long weight) override {
        ++m_num_vars;
        m_text += "[" + std::to_string(weight) + ": " + text_of(literals) + "]";
    }
    [[nodiscard]] std::string const& text() const { return m_text; }

private:
    static std::string text_of(svector<literal> const& literals) {
        std::string result;
        for (literal l : literals) {
            if (!result.empty()) result += " ";
            result += std::to_string(l.sign() ? 2 - l.var() : l.var() - 2);
        }
        return result;
    }

    int m_num_vars;
    std::string m_text;
};

// Delivers the text in pieces of a given size, as a slow pipe does.
class piecewise_buffer : public std::streambuf {
public:
    piecewise_buffer(std::string text, std::size_t piece)
        : m_text(std::move(text))
        , m_piece(piece) {}

protected:
    std::streamsize xsgetn(char* target, std::streamsize count) override {
        std::size_t size = std::min({m_piece, static_cast<std::size_t>(count), m_text.size() - m_position});
        m_text.copy(target, size, m_position);
        m_position += size;
        return static_cast<std::streamsize>(size);
    }

private:
    std::string m_text;
    std::size_t m_piece;
    std::size_t m_position = 0;
};

std::string read(std::istream& in, bool max_sat = false, int existing = 3) {
    recording_sink sink(existing);
    try {
        cnf_parser(sink, in, "f.cnf", max_sat).read();
        return sink.text();
    } catch (cnf_exception const& error) {
        EXPECT_STREQ("Invalid dimacs file: \"f.cnf\".", error.what());
        EXPECT_EQ("f.cnf", error.get_file_name());
        return sink.text() + "!" + std::to_string(error.get_line()) + ": " + error.get_reason();
    }
}

std::string read(std::string const& text, bool max_sat = false, int existing = 3) {
    std::istringstream in(text);
    return read(in, max_sat, existing);
}

// Sets the limit of the weights for the time of a test.
class weight_limit {
public:
    explicit weight_limit(int weight) { set_dimacs_max_weight(weight); }
    ~weight_limit() { set_dimacs_max_weight(m_old); }

private:
    int m_old = g_max_weight;
};

} // namespace

TEST(cnf_parser, clauses_and_comments) {
    EXPECT_EQ("v3(1 -2)(3)", read("c first\np cnf 3 2\n1 -2 0\nc between\n3 0\nc last"));
    EXPECT_EQ("v3(1 -2)(3)(2)", read("p cnf 3 2 1 -2 0\n1 -2 0 3 0\n2 0"));
    EXPECT_EQ("v3(1 -2 3)", read("p cnf 3 2\n1\n\n-2\t\v\f\r\n3\n0\n"));
    EXPECT_EQ("v2(1)()(2)", read("p cnf 2 3\n1 0 0 2 0"));
    EXPECT_EQ("v2(1 2)(-2)", read("p cnf 2 3\n1 2 -0 -2 0c behind\n"));
    EXPECT_EQ("v2(1 -2)", read("p cnf 2 3\n1-2+0"));
}

TEST(cnf_parser, nothing_to_read) {
    EXPECT_EQ("", read(""));
    EXPECT_EQ("", read(" \n\t\r\n"));
    EXPECT_EQ("", read("c only a comment"));
    EXPECT_EQ("", read("c"));
    EXPECT_EQ("()", read("0"));
    std::istream without_buffer(nullptr);
    EXPECT_EQ("", read(without_buffer));
}

TEST(cnf_parser, headers) {
    EXPECT_EQ("v0", read("p cnf 0 0"));
    EXPECT_EQ("v7", read("p cnf 7"));
    EXPECT_EQ("v7", read("p cnf +7 x y z\n"));
    EXPECT_EQ("v7", read("pcnf7 -1"));
    EXPECT_EQ("v7(7)", read("p\n count\n7 -99999999999999999999\n7 0\n"));
    EXPECT_EQ("v0", read("p cnf -5 3\n"));
    EXPECT_EQ("!1: expected 'cnf' or 'wcnf' behind 'p', found 'x'", read("p xcnf 3 2"));
    EXPECT_EQ("!1: expected 'cnf' or 'wcnf' behind 'p', found '3'", read("p 3 2"));
    EXPECT_EQ("!2: expected 'cnf' or 'wcnf' behind 'p', found the end of the file", read("p\n"));
    EXPECT_EQ("!1: expected the number of variables, found the end of the file", read("p cnf"));
    EXPECT_EQ("!1: expected the number of variables, found '*'", read("p cnf *"));
    EXPECT_EQ("!1: expected the number of variables, found the end of the file", read("p cnf -"));
}

TEST(cnf_parser, too_many_variables) {
    std::string const message = "!1: the header promises more variables than the " +
                                std::to_string(cnf_parser::max_vars) + " that are possible";
    EXPECT_EQ(message, read("p cnf 2147483647 1\n1 0\n"));
    EXPECT_EQ(message, read("p cnf 2147483648 1\n1 0\n"));
    EXPECT_EQ(message, read("p cnf 9223372036854775807 1\n"));
    EXPECT_EQ(message, read("p cnf 9223372036854775808 1\n"));
    EXPECT_EQ(message, read("p cnf 36893488147419103233 1\n"));
    EXPECT_EQ(message, read("p cnf " + std::to_string(cnf_parser::max_vars - 2)));
    EXPECT_EQ("v" + std::to_string(cnf_parser::max_vars - 3),
              read("p cnf " + std::to_string(cnf_parser::max_vars - 3)));
    EXPECT_EQ("v0", read("p cnf -2147483648 1\n"));
    EXPECT_EQ("v0", read("p cnf -9223372036854775809 1\n"));
}

TEST(cnf_parser, literals_out_of_range) {
    EXPECT_EQ("v3(3 -3)", read("p cnf 3 1\n3 -3 0"));
    EXPECT_EQ("v3!2: the literal 4 exceeds the 3 variables of the header", read("p cnf 3 1\n4 0"));
    EXPECT_EQ("v3(1)!3: the literal -4 exceeds the 3 variables of the header", read("p cnf 3 1\n1 0\n-4 0"));
    EXPECT_EQ("v3!2: the literal 2147483648 exceeds the 3 variables of the header",
              read("p cnf 3 1\n2147483648 0"));
    EXPECT_EQ("v3!2: the literal -2147483648 exceeds the 3 variables of the header",
              read("p cnf 3 1\n-2147483648 0"));
    for (char const* wrapping : {"9223372036854775808", "-9223372036854775809", "18446744073709551616",
                                 "-18446744073709551617", "100000000000000000000000000000000000000001"}) {
        EXPECT_EQ("v3!2: the literal read exceeds the 3 variables of the header",
                  read(std::string("p cnf 3 1\n") + wrapping + " 0"));
    }
    EXPECT_EQ("!1: a clause stands before the header", read("1 0\np cnf 1 1\n"));
    EXPECT_EQ("()!2: a clause stands before the header", read("0\n-1 0\np cnf 1 1\n"));
}

TEST(cnf_parser, clauses_that_do_not_end) {
    std::string const expected = "expected a literal or the 0 that ends a clause, found ";
    EXPECT_EQ("v2!2: " + expected + "the end of the file", read("p cnf 2 1\n1 2"));
    EXPECT_EQ("v2!3: " + expected + "the end of the file", read("p cnf 2 1\n1 2\n"));
    EXPECT_EQ("v2!2: " + expected + "the end of the file", read("p cnf 2 1\n1 -"));
    EXPECT_EQ("v2!2: " + expected + "' '", read("p cnf 2 1\n1 - 2 0"));
    EXPECT_EQ("v2!2: " + expected + "'-'", read("p cnf 2 1\n1 --2 0"));
    EXPECT_EQ("v2!3: " + expected + "'c'", read("p cnf 2 1\n1\nc 2 0\n"));
    EXPECT_EQ("v2!3: " + expected + "'p'", read("p cnf 2 1\n1\np cnf 2 1\n"));
    EXPECT_EQ("v2(1)!3: " + expected + "'%'", read("p cnf 2 1\n1 0\n%\n0\n"));
    EXPECT_EQ("v2!2: " + expected + "the byte 0", read(std::string("p cnf 2 1\n1 \0 0\n", 17)));
    EXPECT_EQ("v2!2: " + expected + "the byte 255", read("p cnf 2 1\n\377 0\n"));
}

TEST(cnf_parser, numbering_goes_on_from_the_variables_that_exist) {
    EXPECT_EQ("v2(1 -2)", read("p cnf 2 1\n1 -2 0\n", false, 3));
    EXPECT_EQ("v2(11 -12)", read("p cnf 2 1\n1 -2 0\n", false, 13));
    // A second header begins a second block of variables.
    EXPECT_EQ("v2(1 -2)v3(3 -5)", read("p cnf 2 1\n1 -2 0\np cnf 3 1\n1 -3 0\n"));
    EXPECT_EQ("v3(1)v1!3: the literal 2 exceeds the 1 variables of the header",
              read("p cnf 3 1 1\n1 0 p cnf 1 1\n2 0\n"));
}

TEST(cnf_parser, weights) {
    std::string const text = "p wcnf 3 2\n10 1 -2 0\n";
    EXPECT_EQ("v3(1 -2)", read(text, false));
    EXPECT_EQ("v3[10: 1 -2]", read(text, true));
    {
        weight_limit limit(5);
        EXPECT_EQ("v3(1 -2)", read(text, true));
    }
    {
        weight_limit limit(10);
        EXPECT_EQ("v3(1 -2)", read(text, true));
    }
    {
        weight_limit limit(11);
        EXPECT_EQ("v3[10: 1 -2]", read(text, true));
    }
    EXPECT_EQ("v3[999999: 1](2)", read("p wcnf 3 2\n999999 1 0 1000000 2 0", true));
    // A plain file read for its cost: every clause has the price 1.
    EXPECT_EQ("v2[1: 1][1: -1 2]", read("p cnf 2 2\n1 0 -1 2 0", true));
    EXPECT_EQ("v2[3: ]", read("p wcnf 2 2\n3 0", true));
}

TEST(cnf_parser, weights_that_are_none) {
    for (bool max_sat : {false, true}) {
        EXPECT_EQ("v1!2: a weight must not be negative, found -3", read("p wcnf 1 1\n-3 1 0", max_sat));
        EXPECT_EQ("v1!2: the weight is too large", read("p wcnf 1 1\n9223372036854775808 1 0", max_sat));
        EXPECT_EQ("v1!2: the weight is too large", read("p wcnf 1 1\n18446744073709551617 1 0", max_sat));
        EXPECT_EQ("v1!2: expected a weight, found 'h'", read("p wcnf 1 1\nh 1 0", max_sat));
        EXPECT_EQ("v1!2: expected a weight, found '.'", read("p wcnf 1 1\n.5 1 0", max_sat));
    }
}

TEST(cnf_parser, the_top_weight_of_the_header) {
    // A weight of the top or more is hard, however small the top is ...
    EXPECT_EQ("v2[3: 1](2)(-2)", read("p wcnf 2 3 4\n3 1 0 4 2 0 5 -2 0", true));
    // ... and everything below it is soft, however large.
    EXPECT_EQ("v1[85465409368: 1](-1)",
              read("p wcnf 1 2 85465409369\n85465409368 1 0 85465409369 -1 0", true));
    // A limit of the caller still counts.
    weight_limit limit(3);
    EXPECT_EQ("v2(1)[2: 2](-2)", read("p wcnf 2 3 4\n3 1 0 2 2 0 5 -2 0", true));
}

TEST(cnf_parser, a_plain_header_ends_a_weighted_part) {
    EXPECT_EQ("v1[2: 1]v1[1: 3]", read("p wcnf 1 1 9\n2 1 0\np cnf 1 1\n1 0\n", true));
    EXPECT_EQ("v1(1)v1(2)", read("p wcnf 1 1 9\n2 1 0\np cnf 1 1\n1 0\n", false));
}

TEST(cnf_parser, pieces_of_any_size_give_the_same) {
    std::string const text = "c x\r\np wcnf 12 2 70\n10 1 -12\n 0\nc yy\n\n-11 -0";
    for (bool max_sat : {false, true}) {
        std::string const whole = read(text, max_sat);
        EXPECT_EQ(max_sat ? "v12[10: 1 -12]!7: a weight must not be negative, found -11"
                          : "v12(1 -12)!7: a weight must not be negative, found -11",
                  whole);
        for (std::size_t piece = 1; piece <= text.size(); ++piece) {
            piecewise_buffer buffer(text, piece);
            std::istream in(&buffer);
            EXPECT_EQ(whole, read(in, max_sat)) << piece;
        }
    }
}

TEST(cnf_parser, blocks_end_anywhere) {
    // Comments of growing length move a clause over the border of a block.
    for (std::size_t size = text_source::block_size - 40; size < text_source::block_size + 4; ++size) {
        std::string text = "p cnf 1234567 1\nc" + std::string(size - 18, 'x') + "\n1234567 -7654 0\n*";
        EXPECT_EQ("v1234567(1234567 -7654)!4: expected a literal or the 0 that ends a clause, found '*'",
                  read(text));
    }
}

TEST(cnf_parser, random_bytes_end_in_an_answer) {
    static char const alphabet[] = "0123456789 -+\npcwnf%x\r\t";
    for (unsigned round = 0; round < vexor_test::rounds(20000); ++round) {
        std::uint64_t seed = vexor_test::first_seed(1) + round;
        SCOPED_TRACE(seed);
        vexor_test::random_stream random(seed);
        std::string text = random.chance(50) ? "p cnf 9 9\n" : random.chance(50) ? "p wcnf 9 9 9\n" : "";
        for (unsigned i = random.below(40); i > 0; --i) text += alphabet[random.below(sizeof alphabet - 1)];
        std::string hard = read(text, false), soft = read(text, true);
        // Weights do not change what is an error, or where.
        EXPECT_EQ(hard.find('!') == std::string::npos, soft.find('!') == std::string::npos) << text;
    }
}
