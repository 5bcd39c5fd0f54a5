#include "frontend/lexer.h"

#include <algorithm>
#include <array>
#include <climits>

#include "frontend/reserved_symbols.h"

namespace vexor {

// What a token that begins with the character can be. Names go on over the classes from digit on.
enum class lexer::character_class : unsigned char {
    zero, // the byte of value zero, which also stands behind the input at hand
    blank,
    newline,
    left_paren,
    right_paren,
    quote,
    colon,
    semicolon,
    digit,
    minus,
    other
};

lexer::character_class lexer::class_of(char c) {
    using enum character_class;
    static constexpr auto classes = [] {
        std::array<character_class, 256> result{};
        result.fill(other);
        result['\0'] = zero;
        for (char each : {' ', '\t', '\r', '\v', '\f'}) result[static_cast<unsigned char>(each)] = blank;
        result['\n'] = newline;
        result['('] = left_paren;
        result[')'] = right_paren;
        result['"'] = quote;
        result[':'] = colon;
        result[';'] = semicolon;
        result['-'] = minus;
        for (char each = '0'; each <= '9'; each++) result[static_cast<unsigned char>(each)] = digit;
        return result;
    }();
    return classes[static_cast<unsigned char>(c)];
}

lexer::lexer(std::istream& stream, position_tracker* tracker)
    : m_tracker(tracker)
    , m_input(stream)
    , m_cursor(m_input.begin())
    , m_block_pos(tracker->get_file_initial_pos())
    , m_token_pos(tracker->get_file_initial_pos()) {
    m_known_words.resize(min_known_words);
    at_end();
}

lexer::~lexer() { m_input.give_back(m_cursor); }

// Positions are int wherever they are kept: all that lies beyond two gigabytes of input is said to stand at
// its end.
int lexer::position_of(char const* character) const {
    return static_cast<int>(std::min<long long>(m_block_pos + (character - m_input.begin()), INT_MAX));
}

// The cursor and the text from `keep` on stay what they are; true when the cursor got a character.
bool lexer::refill(char const*& keep) {
    auto dropped = keep - m_input.begin();
    auto ahead = m_cursor - keep;
    bool more = m_input.refill(keep);
    m_block_pos += dropped;
    keep = m_input.begin();
    m_cursor = keep + ahead;
    return more;
}

// Makes sure that the cursor is on a character; true if there is none any more.
bool lexer::at_end() {
    if (m_cursor != m_input.end()) return false;
    char const* nothing = m_cursor;
    return !refill(nothing);
}

// Moves the cursor behind a run of digits, or of characters of a name; the text from start on is kept.
void lexer::skip_class(character_class wanted, char const*& start) {
    do {
        if (wanted == character_class::digit) {
            while (class_of(*m_cursor) == wanted) m_cursor++;
        } else {
            while (class_of(*m_cursor) >= character_class::digit) m_cursor++;
        }
    } while (m_cursor == m_input.end() && refill(start));
}

void lexer::set_text(char const* start) {
    m_text = start;
    m_text_length = static_cast<unsigned>(m_cursor - start);
    m_text_in_buffer = false;
    m_has_name = false;
}

void lexer::raise_invalid_token(int pos) const {
    throw invalid_token_exception(m_tracker->get_position(pos));
}

token lexer::next_token() {
    using enum character_class;
    while (true) {
        switch (class_of(*m_cursor)) {
        case zero:
            if (m_cursor != m_input.end()) raise_invalid_token(get_pos());
            if (at_end()) {
                start_token();
                return token::end_of_stream;
            }
            break;
        case blank:
            m_cursor++;
            break;
        case newline:
            new_line();
            break;
        case left_paren:
            return single_character_token(token::left_paren);
        case right_paren:
            return single_character_token(token::right_paren);
        case quote:
            return read_string();
        case colon:
            return read_colon();
        case semicolon:
            skip_comment();
            break;
        case digit:
            return read_numeral();
        case minus:
            return read_minus();
        case other:
            start_token();
            return read_id(m_cursor);
        }
    }
}

token lexer::single_character_token(token kind) {
    start_token();
    m_cursor++;
    return kind;
}

void lexer::new_line() {
    m_tracker->new_line(get_pos());
    m_cursor++;
}

// To the next newline, which is left to be counted.
void lexer::skip_comment() {
    do {
        m_cursor = std::find(m_cursor, m_input.end(), '\n');
    } while (at_end() == false && *m_cursor != '\n');
}

token lexer::read_colon() {
    start_token();
    m_cursor++;
    if (at_end() || *m_cursor != ':') raise_invalid_token(get_pos());
    m_cursor++;
    return token::double_colon;
}

// A minus directly before a digit belongs to the number.
token lexer::read_minus() {
    start_token();
    char const* start = m_cursor++;
    if (m_cursor == m_input.end()) refill(start);
    return class_of(*m_cursor) == character_class::digit ? read_digits(start) : read_id(start);
}

token lexer::read_numeral() {
    start_token();
    char const* start = m_cursor++;
    if (m_cursor == m_input.end()) refill(start);
    if (*m_cursor != 'b') return read_digits(start);
    m_cursor++;
    return read_bitvector_constant();
}

token lexer::read_digits(char const* start) {
    skip_class(character_class::digit, start);
    if (*m_cursor == '/') {
        m_cursor++;
        skip_class(character_class::digit, start);
    }
    set_text(start);
    return token::numeral;
}

token lexer::read_bitvector_constant() {
    char const* start = m_cursor;
    do {
        while (*m_cursor == '0' || *m_cursor == '1') m_cursor++;
    } while (m_cursor == m_input.end() && refill(start));
    set_text(start);
    m_bv_size = m_text_length;
    // All digits at once: doubling the value digit by digit would take quadratic time.
    m_bv_value = m_bv_size == 0 ? numeral() : numeral(get_text(), 2);
    return token::bitvector_constant;
}

token lexer::read_id(char const* start) {
    skip_class(character_class::other, start);
    if (*m_cursor == '\0' && m_cursor != m_input.end()) raise_invalid_token(get_pos());
    set_text(start);
    return find_word();
}

// The cache answers for the words that come again and again, which are nearly all.
token lexer::find_word() {
    std::uint32_t hash = hash_text(m_text, m_text_length);
    known_word const* known = &m_known_words[hash & (m_known_words.size() - 1)];
    if (known->hash != hash || known->length != m_text_length ||
        std::memcmp(known->name.c_str(), m_text, m_text_length) != 0) {
        learn_word(hash);
        known = &m_known_words[hash & (m_known_words.size() - 1)];
    }
    m_name = known->name;
    m_has_name = true;
    return known->kind;
}

// Enters the current text.
void lexer::learn_word(std::uint32_t hash) {
    if (++m_num_misses > 2 * m_known_words.size() && m_known_words.size() < max_known_words)
        grow_known_words();
    known_word& entry = m_known_words[hash & (m_known_words.size() - 1)];
    entry.name = ustring(m_text, m_text_length);
    entry.hash = hash;
    entry.length = m_text_length;
    entry.kind = g_reserved_symbols.find(m_text, m_text_length, hash);
}

void lexer::grow_known_words() {
    vector<known_word> old;
    old.swap(m_known_words);
    m_known_words.resize(old.size() * 2);
    for (known_word const& each : old)
        if (each.length > 0) m_known_words[each.hash & (m_known_words.size() - 1)] = each;
    m_num_misses = 0;
}

token lexer::read_string() {
    start_token();
    m_cursor++;
    m_buffer.reset();
    m_text_length = 0;
    m_text_in_buffer = true;
    m_has_name = false;
    while (true) {
        if (at_end() || *m_cursor == '\n') throw unfinished_string_exception(get_position());
        char c = *m_cursor;
        if (c == '\\') {
            read_escape();
        } else {
            m_cursor++;
            if (c == '"') return token::string;
            m_buffer.append(c);
        }
        m_text_length++;
    }
}

// The cursor is on the backslash.
void lexer::read_escape() {
    int escape_pos = get_pos();
    m_cursor++;
    if (at_end()) throw unfinished_string_exception(get_position());
    char c = *m_cursor;
    if (class_of(c) == character_class::digit) return read_character_code(escape_pos);
    if (c == '\n') {
        new_line();
    } else {
        m_cursor++;
        if (c == 'n') c = '\n';
        if (c == 't') c = '\t';
    }
    m_buffer.append(c);
}

// Up to three digits, read as a decimal number.
void lexer::read_character_code(int escape_pos) {
    int code = 0;
    for (int digits = 0; digits < 3 && !at_end() && class_of(*m_cursor) == character_class::digit; digits++)
        code = code * 10 + (*m_cursor++ - '0');
    if (code > 255) throw escape_sequence_too_large_exception(m_tracker->get_position(escape_pos));
    m_buffer.append(static_cast<char>(code));
}

char const* lexer::get_text() {
    if (!m_text_in_buffer) {
        m_buffer.reset();
        m_buffer.append(m_text, m_text_length);
        m_text_in_buffer = true;
    }
    return m_buffer.c_str();
}

ustring lexer::get_ustring() { return m_has_name ? m_name : ustring(get_text()); }

numeral lexer::get_numeral() {
    constexpr unsigned max_fast_length = 9; // with a sign or without, the value fits an int
    bool negative = *m_text == '-';
    unsigned i = negative ? 1 : 0;
    int value = 0;
    if (m_text_length <= max_fast_length) {
        for (; i < m_text_length && m_text[i] != '/'; i++) value = value * 10 + (m_text[i] - '0');
        if (i == m_text_length) return numeral(negative ? -value : value);
    }
    char const* slash = std::find(m_text, m_text + m_text_length, '/');
    char const* end = m_text + m_text_length;
    bool is_fraction = slash != end;
    if (is_fraction && std::all_of(slash + 1, end, [](char c) { return c == '0'; }))
        raise_invalid_token(m_token_pos);
    return numeral(get_text(), 10);
}

} // namespace vexor
