#include "frontend/read_term.h"

#include <fstream>
#include <sstream>

#include "frontend/parser.h"

namespace vexor {

namespace {

template <class Parse>
auto read(ast_manager* m, std::istream& stream, char const* file_name, Parse parse) {
    m->get_position_tracker().new_file(file_name);
    parser p(stream, m);
    file_end end(m->get_position_tracker(), p);
    p.next();
    return parse(p);
}

shared_ptr<expr> parse_expr(parser& p) { return p.parse_expr(); }
shared_ptr<type> parse_type(parser& p) { return p.parse_type(false); }

} // namespace

file_end::~file_end() { m_tracker.close_file(m_reader.get_pos()); }

file_pause::file_pause(position_tracker& tracker, lexer& reader)
    : m_tracker(tracker)
    , m_reader(reader)
    , m_rest(tracker.get_position(reader.get_pos())) {
    tracker.close_file(reader.get_pos());
}

file_pause::~file_pause() {
    // The tracker counts the first column of a span from 0, as the number of characters before it in its
    // line.
    m_tracker.continue_file(m_rest.m_pos, m_rest.m_column - 1, m_rest.m_line, m_rest.m_file_name);
    m_reader.restart_positions();
}

shared_ptr<expr> read_expr(ast_manager* m, std::istream& stream, char const* file_name) {
    return read(m, stream, file_name, parse_expr);
}

shared_ptr<expr> read_expr_from_string(ast_manager* m, char const* text) {
    std::istringstream stream(text);
    return read_expr(m, stream, "<string>");
}

shared_ptr<expr> read_expr_from_file(ast_manager* m, char const* file_name) {
    std::ifstream stream(file_name);
    return read_expr(m, stream, file_name);
}

shared_ptr<type> read_type(ast_manager* m, std::istream& stream, char const* file_name) {
    return read(m, stream, file_name, parse_type);
}

shared_ptr<type> read_type_from_string(ast_manager* m, char const* text) {
    std::istringstream stream(text);
    return read_type(m, stream, "<string>");
}

shared_ptr<type> read_type_from_file(ast_manager* m, char const* file_name) {
    std::ifstream stream(file_name);
    return read_type(m, stream, file_name);
}

} // namespace vexor
