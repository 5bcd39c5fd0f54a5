// The lexer of the native language: from characters to tokens.
#pragma once

#include <iosfwd>

#include "base/numeral.h"
#include "base/position_tracker.h"
#include "base/string_buffer.h"
#include "base/ustring.h"
#include "base/vector.h"
#include "frontend/input_buffer.h"
#include "frontend/lexer_exceptions.h"
#include "frontend/token.h"

namespace vexor {

// Promises: next_token gives the tokens of the stream in order, then end_of_stream for ever. Positions are
// counted from the tracker's start of the current file, every newline is reported to the tracker once. What
// no token starts with raises a lexer_exception, after which the lexer is not used any more. What was not
// read yet goes back to the stream when the lexer goes.
//
// A byte of zero stands for nothing in a text: outside of comments and strings it is an invalid token, since
// names end at it wherever they are kept. Bytes above 127 are ordinary characters of names.
class lexer {
public:
    lexer(std::istream& stream, position_tracker* tracker);
    lexer(lexer const&) = delete; // the stream has one reader
    lexer& operator=(lexer const&) = delete;
    ~lexer();

    token next_token();

    // Where the current token began, and where the next character stands.
    position_tracker::position get_position() const { return m_tracker->get_position(m_token_pos); }
    int get_token_pos() const { return m_token_pos; }
    int get_pos() const { return position_of(m_cursor); }

    // The text of the current identifier, numeral or string; valid until the next token. A string may have
    // zero bytes: get_text_length counts them.
    char const* get_text();
    unsigned get_text_length() const { return m_text_length; }
    // The same, interned. Of an identifier it is at hand.
    ustring get_ustring();
    // The value of the current numeral, base 10; invalid_token_exception for a zero denominator, as in "1/0"
    // and "1/".
    numeral get_numeral();
    // The value of the current bit-vector constant and its number of digits.
    numeral const& get_bv_value() const { return m_bv_value; }
    unsigned get_bv_size() const { return m_bv_size; }

    // The tracker has begun a new span at the next character, after another file was read in between.
    void restart_positions() {
        m_block_pos = m_tracker->get_file_initial_pos() - (m_cursor - m_input.begin());
    }

private:
    struct known_word {
        ustring name;             // the word
        std::uint32_t hash = 0;   // of its text
        std::uint32_t length = 0; // of its text; 0 in a free entry
        token kind = token::identifier;
    };
    static constexpr unsigned min_known_words = 128; // powers of two
    static constexpr unsigned max_known_words = 64 * 1024;
    enum class character_class : unsigned char;
    static character_class class_of(char c);

    int position_of(char const* character) const;
    bool refill(char const*& keep);
    bool at_end();
    void start_token() { m_token_pos = position_of(m_cursor); }
    void skip_class(character_class wanted, char const*& start);
    void set_text(char const* start);
    token single_character_token(token kind);

    void new_line();
    void skip_comment();
    token read_colon();
    token read_minus();
    token read_numeral();
    token read_digits(char const* start);
    token read_bitvector_constant();
    token read_id(char const* start);
    token find_word();
    void learn_word(std::uint32_t hash);
    void grow_known_words();
    token read_string();
    void read_escape();
    void read_character_code(int escape_pos);
    [[noreturn]] void raise_invalid_token(int pos) const;

    position_tracker* m_tracker; // not owned
    input_buffer m_input;        // the stream, not owned, in blocks
    char const* m_cursor;        // the current character; m_input.end() when it must be fetched first
    long long m_block_pos;       // global position of m_input.begin()
    int m_token_pos;             // global position where the current token began
    char const* m_text =
        nullptr;                // text of the current token in m_input, or in m_buffer when m_text_in_buffer
    unsigned m_text_length = 0; // its length
    bool m_text_in_buffer = false; // does m_buffer hold the text, ended by a zero byte
    string_buffer m_buffer;        // a string with its escapes resolved, or a copy of the text on demand
    ustring m_name;                // the text of the current token, interned, when m_has_name
    bool m_has_name = false;       // is the current token a word
    numeral m_bv_value;            // of the last bit-vector constant
    unsigned m_bv_size = 0;        // its number of digits
    // The words met last, by hash: a cache before the global tables. A short text is not to pay for a large
    // one, so it starts small and doubles when it misses often.
    vector<known_word> m_known_words;
    unsigned m_num_misses = 0; // since it last grew
};

} // namespace vexor
