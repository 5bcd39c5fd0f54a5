// One expression or one type from a text in the native language.
#pragma once

#include <iosfwd>

#include "ast/node/ast_manager.h"

namespace vexor {

class lexer;

// Tells the tracker, when it goes, that the current file ends where its lexer has come to.
class file_end {
public:
    file_end(position_tracker& tracker, lexer const& reader)
        : m_tracker(tracker)
        , m_reader(reader) {}
    file_end(file_end const&) = delete; // a file is closed once
    file_end& operator=(file_end const&) = delete;
    ~file_end();

private:
    position_tracker& m_tracker; // not owned
    lexer const& m_reader;       // not owned
};

// Tells the tracker that the current file rests behind the token read last, and, when it goes, that it goes
// on there: other files may be read in between, also one that fails.
class file_pause {
public:
    file_pause(position_tracker& tracker, lexer& reader);
    file_pause(file_pause const&) = delete; // a file is resumed once
    file_pause& operator=(file_pause const&) = delete;
    ~file_pause();

private:
    position_tracker& m_tracker;             // not owned
    lexer& m_reader;                         // of the file that rests; not owned
    position_tracker::position const m_rest; // where it rests
};

// What stands behind the expression is not read. Errors are exceptions of the tree below vexor_exception. A
// file that cannot be opened reads as an empty one.
shared_ptr<expr> read_expr(ast_manager* m, std::istream& stream, char const* file_name);
shared_ptr<expr> read_expr_from_string(ast_manager* m, char const* text);
shared_ptr<expr> read_expr_from_file(ast_manager* m, char const* file_name);

shared_ptr<type> read_type(ast_manager* m, std::istream& stream, char const* file_name);
shared_ptr<type> read_type_from_string(ast_manager* m, char const* text);
shared_ptr<type> read_type_from_file(ast_manager* m, char const* file_name);

} // namespace vexor
