#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/lexer.h"
#include "frontend/reserved_symbols.h"
#include "support/random.h"

using namespace vexor;

namespace {

std::string position_text(position_tracker::position const& position) {
    std::ostringstream out;
    dump_position(out, position);
    return out.str();
}

// One line per token: its name, its text where that is not the name, and its position; then the exception, if
// any.
std::vector<std::string> tokens_of(std::istream& stream) {
    position_tracker tracker;
    tracker.new_file("f");
    lexer lex(stream, &tracker);
    std::vector<std::string> result;
    try {
        while (true) {
            token kind = lex.next_token();
            std::string line = token2str(kind);
            if (kind == token::identifier || kind == token::numeral || kind == token::string)
                line += " " + std::string(lex.get_text(), lex.get_text_length());
            if (kind == token::bitvector_constant)
                line += " " + lex.get_bv_value().to_string() + " of " + std::to_string(lex.get_bv_size());
            line += " " + std::to_string(lex.get_position().m_line) + ":" +
                    std::to_string(lex.get_position().m_pos);
            result.push_back(line);
            if (kind == token::end_of_stream) return result;
        }
    } catch (lexer_exception const& e) {
        result.push_back(e.what());
    }
    return result;
}

std::vector<std::string> tokens_of(std::string const& text) {
    std::istringstream stream(text);
    return tokens_of(stream);
}

using lines = std::vector<std::string>;

// Hands out its text in pieces of the given size, as a pipe does.
class chunked_source : public std::streambuf {
public:
    chunked_source(std::string text, std::size_t piece)
        : m_text(std::move(text))
        , m_piece(piece) {}
    std::size_t handed_out() const { return m_next; }

protected:
    int_type underflow() override {
        if (m_next == m_text.size()) return traits_type::eof();
        std::size_t n = std::min(m_piece, m_text.size() - m_next);
        setg(m_text.data() + m_next, m_text.data() + m_next, m_text.data() + m_next + n);
        m_next += n;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string m_text;
    std::size_t m_piece;
    std::size_t m_next = 0;
};

TEST(lexer, names_of_tokens) {
    EXPECT_STREQ(token2str(token::left_paren), "(");
    EXPECT_STREQ(token2str(token::right_paren), ")");
    EXPECT_STREQ(token2str(token::double_colon), "::");
    EXPECT_STREQ(token2str(token::string), "string");
    EXPECT_STREQ(token2str(token::numeral), "numeral");
    EXPECT_STREQ(token2str(token::identifier), "identifier");
    EXPECT_STREQ(token2str(token::bitvector_constant), "constant-bitvector");
    EXPECT_STREQ(token2str(token::end_of_stream), "(end-of-stream)");
    EXPECT_STREQ(token2str(token::kw_sbv_le), "bv-sle");
    EXPECT_STREQ(token2str(token::kw_ite), "ite");
}

TEST(lexer, reserved_words) {
    // Written out here, independent of the table in the source.
    std::string const words =
        "true false = /= and or not if ite => + - * / < <= > >= bv-add bv-sub bv-mul bv-neg bv-concat "
        "bv-extract "
        "bv-and bv-or bv-not bv-xor bv-lt bv-le bv-gt bv-ge bv-slt bv-sle bv-sgt bv-sge mk-bv bv-sign-extend "
        "bv-shift-right0 bv-shift-right1 bv-shift-righta bv-shift-left0 bv-shift-left1 -> define define-type "
        "lambda "
        "mapping let update tuple record subtype subrange scalar datatype mk-tuple mk-record select exists "
        "forall "
        "echo push pop reset include assert assert+ assert-lpb retract check eval-in-model max-sat "
        "max-walksat bool "
        "number real int nat bitvector exit dump-context status set-evidence! set-verbosity! set-arith-only! "
        "set-fire-and-forget! help";
    std::istringstream in(words);
    unsigned count = 0;
    for (std::string word; in >> word; count++) {
        token kind = g_reserved_symbols.find(word.c_str());
        EXPECT_NE(kind, token::identifier) << word;
        EXPECT_STREQ(token2str(kind), word == "if" ? "ite" : word.c_str());
        std::istringstream one(word);
        position_tracker tracker;
        tracker.new_file("f");
        EXPECT_EQ(lexer(one, &tracker).next_token(), kind) << word;
    }
    EXPECT_EQ(count, 88u);
    EXPECT_EQ(g_reserved_symbols.find("if"), g_reserved_symbols.find("ite"));
    for (char const* other : {"", "implies", "sbv-lt", "bv-rotate_left", "bv-shl", "True", "define-", "nat "})
        EXPECT_EQ(g_reserved_symbols.find(other), token::identifier) << other;
}

TEST(lexer, empty_input) {
    EXPECT_EQ(tokens_of(""), lines{"(end-of-stream) 1:0"});
    EXPECT_EQ(tokens_of(" \t\r\v\f"), lines{"(end-of-stream) 1:5"});
    EXPECT_EQ(tokens_of("\n\n"), lines{"(end-of-stream) 3:2"});
}

TEST(lexer, comments) {
    EXPECT_EQ(tokens_of(";"), lines{"(end-of-stream) 1:1"});
    EXPECT_EQ(tokens_of("a;b\nc ; d"),
              (lines{"identifier a 1:0", "identifier c 2:4", "(end-of-stream) 2:9"}));
    EXPECT_EQ(tokens_of(std::string(";\0\n;\n(", 6)), (lines{"( 3:5", "(end-of-stream) 3:6"}));
}

TEST(lexer, double_colon) {
    EXPECT_EQ(tokens_of("x::y"),
              (lines{"identifier x 1:0", ":: 1:1", "identifier y 1:3", "(end-of-stream) 1:4"}));
    EXPECT_EQ(tokens_of("x:y"),
              (lines{"identifier x 1:0", "[f, line(1), column(3), position(2)]: Invalid token."}));
    EXPECT_EQ(tokens_of("\n :"), lines{"[f, line(2), column(3), position(3)]: Invalid token."});
    EXPECT_EQ(tokens_of(":::"), (lines{":: 1:0", "[f, line(1), column(4), position(3)]: Invalid token."}));
}

TEST(lexer, numerals) {
    EXPECT_EQ(tokens_of("0 12 -7 3/4 -3/4 1/"),
              (lines{"numeral 0 1:0", "numeral 12 1:2", "numeral -7 1:5", "numeral 3/4 1:8",
                     "numeral -3/4 1:12", "numeral 1/ 1:17", "(end-of-stream) 1:19"}));
    EXPECT_EQ(tokens_of("- 7"), (lines{"- 1:0", "numeral 7 1:2", "(end-of-stream) 1:3"}));
    EXPECT_EQ(tokens_of("-("), (lines{"- 1:0", "( 1:1", "(end-of-stream) 1:2"}));
    EXPECT_EQ(tokens_of("-x"), (lines{"identifier -x 1:0", "(end-of-stream) 1:2"}));
    EXPECT_EQ(tokens_of("-"), (lines{"- 1:0", "(end-of-stream) 1:1"}));
    EXPECT_EQ(tokens_of("12abc"), (lines{"numeral 12 1:0", "identifier abc 1:2", "(end-of-stream) 1:5"}));
    EXPECT_EQ(tokens_of("1.5"), (lines{"numeral 1 1:0", "identifier .5 1:1", "(end-of-stream) 1:3"}));
    EXPECT_EQ(tokens_of("1/2/3"), (lines{"numeral 1/2 1:0", "identifier /3 1:3", "(end-of-stream) 1:5"}));
}

TEST(lexer, values_of_numerals) {
    struct {
        char const* text;
        char const* value;
    } const cases[] = {{"0", "0"},
                       {"-0", "0"},
                       {"007", "7"},
                       {"-12", "-12"},
                       {"999999999", "999999999"},
                       {"-99999999", "-99999999"},
                       {"1073741813", "1073741813"},
                       {"1073741814", "1073741814"},
                       {"3/6", "1/2"},
                       {"-3/6", "-1/2"},
                       {"0/7", "0"},
                       {"123456789012345678901234567890", "123456789012345678901234567890"},
                       {"1/2", "1/2"},
                       {"-100000000000000000000/300000000000000000000", "-1/3"}};
    for (auto const& each : cases) {
        std::istringstream in(each.text);
        position_tracker tracker;
        tracker.new_file("f");
        lexer lex(in, &tracker);
        ASSERT_EQ(lex.next_token(), token::numeral);
        EXPECT_EQ(lex.get_numeral().to_string(), each.value) << each.text;
        EXPECT_STREQ(lex.get_text(), each.text);
    }
    for (char const* text : {" 1/", " 1/0", " -5/000", " 12345678901234567890/0"}) {
        std::istringstream in(text);
        position_tracker tracker;
        tracker.new_file("f");
        lexer lex(in, &tracker);
        ASSERT_EQ(lex.next_token(), token::numeral);
        try {
            lex.get_numeral();
            ADD_FAILURE() << text;
        } catch (invalid_token_exception const& e) {
            EXPECT_STREQ(e.what(), "[f, line(1), column(2), position(1)]: Invalid token.");
        }
    }
}

TEST(lexer, bitvector_constants) {
    EXPECT_EQ(
        tokens_of("0b1010 1b0 0b 9b0001"),
        (lines{"constant-bitvector 10 of 4 1:0", "constant-bitvector 0 of 1 1:7",
               "constant-bitvector 0 of 0 1:11", "constant-bitvector 1 of 4 1:14", "(end-of-stream) 1:20"}));
    EXPECT_EQ(tokens_of("-5b1"), (lines{"numeral -5 1:0", "identifier b1 1:2", "(end-of-stream) 1:4"}));
    EXPECT_EQ(tokens_of("10b1"), (lines{"numeral 10 1:0", "identifier b1 1:2", "(end-of-stream) 1:4"}));
    EXPECT_EQ(tokens_of("0b102"),
              (lines{"constant-bitvector 2 of 2 1:0", "numeral 2 1:4", "(end-of-stream) 1:5"}));
    EXPECT_EQ(tokens_of("0b" + std::string(64, '1')),
              (lines{"constant-bitvector 18446744073709551615 of 64 1:0", "(end-of-stream) 1:66"}));
}

TEST(lexer, strings) {
    EXPECT_EQ(tokens_of("\"a b\""), (lines{"string a b 1:0", "(end-of-stream) 1:5"}));
    EXPECT_EQ(tokens_of("\"\""), (lines{"string  1:0", "(end-of-stream) 1:2"}));
    EXPECT_EQ(tokens_of("\"a\\065b\""), (lines{"string aAb 1:0", "(end-of-stream) 1:8"}));
    EXPECT_EQ(tokens_of("\"\\0650\""), (lines{"string A0 1:0", "(end-of-stream) 1:7"}));
    EXPECT_EQ(tokens_of("\"\\65x\\9\""), (lines{"string Ax\t 1:0", "(end-of-stream) 1:8"}));
    EXPECT_EQ(tokens_of("\"\\n\\t\\\\\\\"\\q\""), (lines{"string \n\t\\\"q 1:0", "(end-of-stream) 1:12"}));
    EXPECT_EQ(tokens_of("\"a\\\nb\" c"),
              (lines{"string a\nb 1:0", "identifier c 2:7", "(end-of-stream) 2:8"}));
    EXPECT_EQ(tokens_of("\"\\255\\000\""),
              (lines{std::string("string \xff\0 1:0", 13), "(end-of-stream) 1:10"}));
    EXPECT_EQ(tokens_of(std::string("\"a\0b\"", 5)),
              (lines{std::string("string a\0b 1:0", 14), "(end-of-stream) 1:5"}));
}

TEST(lexer, unfinished_strings) {
    for (char const* text : {" \"", " \"a", " \"a\nb\"", " \"\\", " \"\\\""})
        EXPECT_EQ(tokens_of(text), lines{"[f, line(1), column(2), position(1)]: Unfinished string."}) << text;
    EXPECT_EQ(tokens_of("\"a\\\n"), lines{"[f, line(1), column(1), position(0)]: Unfinished string."});
}

TEST(lexer, escape_sequence_too_large) {
    EXPECT_EQ(tokens_of("\"ab\\256\""),
              lines{"[f, line(1), column(4), position(3)]: Escape sequence is too large."});
    EXPECT_EQ(tokens_of("\n\"\\999"),
              lines{"[f, line(2), column(2), position(2)]: Escape sequence is too large."});
}

TEST(lexer, identifiers) {
    EXPECT_EQ(tokens_of("a.b+c!#$%&'*,/<=>?@[]^_`{|}~-9"),
              (lines{"identifier a.b+c!#$%&'*,/<=>?@[]^_`{|}~-9 1:0", "(end-of-stream) 1:30"}));
    EXPECT_EQ(tokens_of("a(b)c;d\ne\"f\"g"),
              (lines{"identifier a 1:0", "( 1:1", "identifier b 1:2", ") 1:3", "identifier c 1:4",
                     "identifier e 2:8", "string f 2:9", "identifier g 2:12", "(end-of-stream) 2:13"}));
    EXPECT_EQ(tokens_of("\xc3\xa9t\xe9\xff"),
              (lines{"identifier \xc3\xa9t\xe9\xff 1:0", "(end-of-stream) 1:5"}));
}

TEST(lexer, zero_bytes_are_no_part_of_names) {
    EXPECT_EQ(tokens_of(std::string("a\0b", 3)),
              lines{"[f, line(1), column(2), position(1)]: Invalid token."});
    EXPECT_EQ(tokens_of(std::string("\n \0", 3)),
              lines{"[f, line(2), column(2), position(2)]: Invalid token."});
    EXPECT_EQ(tokens_of(std::string("12\0", 3)),
              (lines{"numeral 12 1:0", "[f, line(1), column(3), position(2)]: Invalid token."}));
}

TEST(lexer, interned_text) {
    std::istringstream in("abc 12 \"abc\" abc");
    position_tracker tracker;
    tracker.new_file("f");
    lexer lex(in, &tracker);
    lex.next_token();
    EXPECT_EQ(lex.get_ustring(), ustring("abc"));
    lex.next_token();
    EXPECT_EQ(lex.get_ustring(), ustring("12"));
    lex.next_token();
    EXPECT_EQ(lex.get_ustring(), ustring("abc"));
    lex.next_token();
    EXPECT_EQ(lex.get_ustring(), ustring("abc"));
}

TEST(lexer, megabytes) {
    std::string name(1 << 20, 'x');
    std::string digits(1000000, '7');
    EXPECT_EQ(tokens_of(name + " " + digits),
              (lines{"identifier " + name + " 1:0", "numeral " + digits + " 1:1048577",
                     "(end-of-stream) 1:2048577"}));
    std::istringstream in("0b" + std::string(1000000, '1') + " " + digits);
    position_tracker tracker;
    tracker.new_file("f");
    lexer lex(in, &tracker);
    ASSERT_EQ(lex.next_token(), token::bitvector_constant);
    EXPECT_EQ(lex.get_bv_size(), 1000000u);
    ASSERT_EQ(lex.next_token(), token::numeral);
    EXPECT_EQ(lex.get_numeral().to_string(), digits);
}

TEST(lexer, more_words_than_the_cache_holds) {
    std::string text;
    for (int round = 0; round < 2; round++)
        for (int i = 0; i < 10000; i++) text += "v" + std::to_string(i) + " ";
    std::istringstream in(text);
    position_tracker tracker;
    tracker.new_file("f");
    lexer lex(in, &tracker);
    for (int i = 0; i < 20000; i++) {
        ASSERT_EQ(lex.next_token(), token::identifier);
        ASSERT_EQ(lex.get_ustring(), ustring(("v" + std::to_string(i % 10000)).c_str()));
    }
    EXPECT_EQ(lex.next_token(), token::end_of_stream);
}

// The way the stream hands out its characters is no part of the text.
TEST(lexer, pieces_of_any_size) {
    std::string const alphabet = "ab01:()\"\\\n; -/b\tx";
    std::uint64_t seed = vexor_test::first_seed(20261);
    for (unsigned round = 0; round < vexor_test::rounds(2000); round++, seed++) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        vexor_test::random_stream random(seed);
        std::string text;
        for (unsigned i = random.below(40); i > 0; i--) text += alphabet[random.below(alphabet.size())];
        lines whole = tokens_of(text);
        for (std::size_t piece : {1, 2, 3, 7}) {
            chunked_source source(text, piece);
            std::istream stream(&source);
            ASSERT_EQ(tokens_of(stream), whole) << text;
        }
    }
}

TEST(lexer, a_pipe_is_not_read_ahead) {
    chunked_source source("(push)(pop)", 1);
    std::istream stream(&source);
    position_tracker tracker;
    tracker.new_file("f");
    lexer lex(stream, &tracker);
    for (token kind : {token::left_paren, token::kw_push, token::right_paren})
        EXPECT_EQ(lex.next_token(), kind);
    EXPECT_EQ(source.handed_out(), 6u);
}

TEST(lexer, unread_characters_go_back) {
    position_tracker tracker;
    tracker.new_file("f");
    std::istringstream in("(a) rest");
    {
        lexer lex(in, &tracker);
        for (int i = 0; i < 3; i++) lex.next_token();
    }
    std::string rest;
    std::getline(in, rest);
    EXPECT_EQ(rest, " rest");
}

TEST(lexer, streams_that_cannot_be_read) {
    for (char const* name : {"/", "/no/such/file"}) {
        std::ifstream in(name);
        EXPECT_EQ(tokens_of(in), lines{"(end-of-stream) 1:0"}) << name;
    }
    std::istream none(nullptr);
    EXPECT_EQ(tokens_of(none), lines{"(end-of-stream) 1:0"});
}

TEST(lexer, positions_go_on_with_the_tracker) {
    position_tracker tracker;
    tracker.new_file("first");
    std::istringstream first("a\nb");
    {
        lexer lex(first, &tracker);
        while (lex.next_token() != token::end_of_stream) {
        }
        tracker.close_file(lex.get_pos());
    }
    tracker.new_file("second");
    std::istringstream second(" c");
    lexer lex(second, &tracker);
    lex.next_token();
    EXPECT_EQ(position_text(lex.get_position()), "[second, line(1), column(2), position(1)]:");
}

} // namespace
