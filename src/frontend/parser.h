// The parser of the native language: from tokens to nodes.
//
// A recursive-descent parser that builds nodes as it reads and resolves names on the way; its sources are
// split by what they parse. Every parse_ function is entered with the current token on the first token of its
// construct and left with it on the last one, so that nothing behind a construct is ever asked for: whoever
// types a command sees it carried out at its closing parenthesis.
#pragma once

#include <iosfwd>

#include "ast/node/ast_manager.h"
#include "base/hash_table.h"
#include "base/scoped_table.h"
#include "base/shared_ptr.h"
#include "frontend/lexer.h"
#include "frontend/parser_exceptions.h"

namespace vexor {

class context;

// Promises: a parse that raises leaves the manager's names as they were, and holds no node after the parser
// is gone. Recursion runs on the deep stack; text nested deeper than that holds raises
// nesting_too_deep_parser_exception.
class parser : public lexer {
public:
    // Expressions and types get position -1 and are shared: built-in names, one name_expr for a global name,
    // one type_name for a type, one (not x) for a variable. For text that a machine wrote; read at each use.
    static bool m_sharing;
    // From the id of a retractable assertion to the position of its command.
    static hash_map<int, int, int_hash> m_assertion_id_manager;

    // The context may be null when only expressions, types and definitions are read.
    parser(std::istream& stream, ast_manager* m, context* ctx = nullptr);
    ~parser();

    // The token after the current one becomes the current one.
    token next() { return m_curr_token = next_token(); }
    // Raises unexpected_token_exception when the current token is another one.
    void check(token expected) const;
    void check_next(token expected);
    bool test_next(token expected) { return next() == expected; }

    // The expression or type that starts at the current token. Here definition says that the definition of a
    // type is expected, for the message and for the forms that only a definition has.
    shared_ptr<expr> parse_expr();
    shared_ptr<type> parse_type(bool definition);
    // (define ...) and (define-type ...), from the keyword to the closing parenthesis; pos is that of the
    // opening one. The result is the declaration, which the manager knows now.
    shared_ptr<const_decl> parse_const_decl(int pos);
    shared_ptr<type_decl> parse_type_decl(int pos);

    ast_manager* get_manager() const { return m_manager; }

protected:
    // From now on "#" and a number are names for nodes, see parse_labels.cpp; and those met so far are
    // forgotten.
    void allow_labels() { m_labels_allowed = true; }
    void reset_labels() { m_labels.reset(); }
    // Forgets the shared nodes, after names or the manager's world have changed as a whole.
    void reset_caches();

    context* m_context;                        // for commands, null without one
    ast_manager* const m_manager;              // owner of all nodes
    token m_curr_token = token::end_of_stream; // the one token of lookahead

private:
    class scope;
    template <class T>
    class node_list;

    // --- parser.cpp: positions, names, operators.
    int node_pos(int pos) const { return m_sharing ? -1 : pos; }
    position_tracker::position position_at(int pos) const { return m_manager->get_position(pos); }
    template <class F>
    auto at_any_depth(F&& f) -> decltype(f());
    void enter(identifier* id, var_decl* d) { m_scope_table.insert(id->get_name(), d); }
    shared_ptr<identifier> parse_identifier();
    shared_ptr<expr> parse_name_expr();
    shared_ptr<expr> parse_global_name_expr(ustring const& name);
    shared_ptr<expr> mk_operator(token op);
    template <class D>
    shared_ptr<expr> mk_builtin_name();
    bool read_index(unsigned max, unsigned& result);

    // --- parse_expr.cpp: expressions.
    shared_ptr<expr> parse_nested_expr();
    shared_ptr<expr> parse_form();
    shared_ptr<expr> parse_application(int pos);
    static void put_high_end_first(application* extract);
    shared_ptr<expr> share_not(expr* op, expr* arg);
    shared_ptr<expr> parse_bitvector_constant();
    shared_ptr<expr> parse_mk_bv(int pos);
    shared_ptr<expr> parse_update(int pos);
    shared_ptr<expr> parse_function_update(expr* target, int pos);
    shared_ptr<expr> parse_select(int pos);
    shared_ptr<expr> parse_mk_tuple(int pos);
    shared_ptr<expr> parse_mk_record(int pos);

    // --- parse_binders.cpp: expressions that bind variables.
    template <class T>
    shared_ptr<expr> parse_binding_expr(int pos);
    template <class T>
    shared_ptr<T> parse_var_decl(bool enter_name);
    shared_ptr<expr> parse_let(int pos);
    shared_ptr<let_decl> parse_let_decl();

    // --- parse_type.cpp: types.
    shared_ptr<type> parse_nested_type(bool definition);
    shared_ptr<type> parse_type_form(bool definition);
    shared_ptr<type> mk_type_name(ustring const& name, int pos);
    shared_ptr<type> mk_builtin_type(type_name* shared);
    shared_ptr<var_decl> parse_type_or_var_decl();
    void parse_components(node_list<var_decl>& components);
    shared_ptr<type> parse_function_type(int pos);
    shared_ptr<type> parse_tuple_type(int pos);
    shared_ptr<type> parse_record_type(int pos);
    shared_ptr<type> parse_subtype(int pos);
    shared_ptr<type> parse_subrange(int pos);
    shared_ptr<type> parse_bitvector_type(int pos);

    // --- parse_datatype.cpp: the types that bring names with them.
    void check_end_of_definition();
    shared_ptr<type> parse_scalar_type(int pos);
    shared_ptr<type> parse_datatype(int pos);
    shared_ptr<constructor_decl> parse_constructor();
    shared_ptr<accessor_decl> parse_accessor(recognizer_decl* recognizer);
    void reset_accessor_parsing_auxiliary_fields();

    // --- parse_labels.cpp: names for nodes.
    bool is_label(ustring const& name) const;
    shared_ptr<expr> parse_labelled_expr(ustring const& label);
    shared_ptr<type> parse_labelled_type(ustring const& label);

    // --- parse_definition.cpp: define and define-type.
    shared_ptr<const_decl> parse_constant(int pos);
    shared_ptr<const_decl> parse_function(int pos);
    shared_ptr<const_decl> declare(identifier* id, type* t, expr* definition, int pos);
    shared_ptr<type_decl> parse_named_type(int pos);
    shared_ptr<type> parse_type_definition(type_decl* d);

    scoped_table<ustring, var_decl*, hash_ustring>
        m_scope_table; // local variables in scope; held by their readers
    // Stacks of what unfinished constructs have read so far; see node_list.
    shared_ptr_vector<expr> m_exprs;
    shared_ptr_vector<var_decl> m_vars;
    shared_ptr_vector<let_decl> m_lets;
    bool m_labels_allowed = false;                             // see allow_labels
    hash_map<ustring, shared_ptr<ast>, hash_ustring> m_labels; // nodes by their labels
    type_decl* m_curr_type_decl = nullptr; // the type under definition, held by parse_type_decl; else null
    ustring m_curr_type_name;              // its name
    bool m_definition_closed = false; // was the closing parenthesis of define-type read with the definition
    shared_ptr<var_decl> m_accessor_arg; // argument of the accessor being parsed; else null
    bool m_accessor_arg_used = false;    // did the accessor's type mention an earlier accessor
    hash_map<ustring, shared_ptr<name_expr>, hash_ustring>
        m_name_expr_cache; // with m_sharing: names of constants
    hash_map<ustring, shared_ptr<type_name>, hash_ustring>
        m_type_name_cache;                                                // with m_sharing: names of types
    hash_map<ustring, shared_ptr<application>, hash_ustring> m_not_cache; // with m_sharing: (not name)
};

} // namespace vexor
