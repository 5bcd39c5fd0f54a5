// Reads a native file for what it says, without a solver: definitions, and what is asserted as plain
// expressions.
#pragma once

#include <iosfwd>

#include "ast/node/ast_manager.h"
#include "base/shared_ptr.h"

namespace vexor {

// What a file says: const_decl and type_decl for definitions, expr for assertions, in the order of the file.
using native_contents = shared_ptr_vector<ast>;

// Appends to the contents. Definitions enter the manager; `push` and `pop` open and close its scopes.
// Commands that only ask a solver for something are passed over. What cannot be done without a solver or
// another file (assert-lpb, include, reset) raises top_level_elem_expected_exception; `exit` ends the
// reading. With g_type_check, assertions are checked. After an exception the contents read so far stay, and
// so do their names.
//
// Besides the native language the reader takes what print_native writes with sharing: "#" and a number
// directly before an opening parenthesis names the node that follows, and alone stands for it, within one
// command.
void read_native(ast_manager* m, std::istream& stream, char const* file_name, native_contents& contents);

enum class print_mode { tree, dag };

// Writes a file that read_native reads to equal contents.
void print_native(std::ostream& out, native_contents const& contents, print_mode mode);

} // namespace vexor
