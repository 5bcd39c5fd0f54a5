#include "frontend/parser.h"

#include "base/deep_stack.h"
#include "frontend/parser_parts.h"

namespace vexor {

bool parser::m_sharing = false;
hash_map<int, int, int_hash> parser::m_assertion_id_manager;

parser::parser(std::istream& stream, ast_manager* m, context* ctx)
    : lexer(stream, &m->get_position_tracker())
    , m_context(ctx)
    , m_manager(m) {}

parser::~parser() = default;

void parser::reset_caches() {
    m_name_expr_cache.reset();
    m_type_name_cache.reset();
    m_not_cache.reset();
}

void parser::check(token expected) const {
    if (m_curr_token != expected) throw unexpected_token_exception(get_position(), m_curr_token, expected);
}

void parser::check_next(token expected) {
    next();
    check(expected);
}

// Runs f on the deep stack; text that nests deeper than even that is told with the place where it did.
template <class F>
auto parser::at_any_depth(F&& f) -> decltype(f()) {
    try {
        return on_deep_stack(f);
    } catch (nesting_too_deep_exception const&) {
        throw nesting_too_deep_parser_exception(get_position());
    }
}

shared_ptr<expr> parser::parse_expr() {
    return at_any_depth([this] { return parse_nested_expr(); });
}

shared_ptr<type> parser::parse_type(bool definition) {
    return at_any_depth([&] { return parse_nested_type(definition); });
}

shared_ptr<const_decl> parser::parse_const_decl(int pos) {
    return at_any_depth([&] {
        scope parameters(*this);
        next();
        return m_curr_token == token::left_paren ? parse_function(pos) : parse_constant(pos);
    });
}

shared_ptr<type_decl> parser::parse_type_decl(int pos) {
    return at_any_depth([&] { return parse_named_type(pos); });
}

shared_ptr<identifier> parser::parse_identifier() {
    check(token::identifier);
    return mk<identifier>(m_manager, get_ustring(), get_token_pos());
}

// A non-negative number in plain digits, up to max; false for any other numeral.
bool parser::read_index(unsigned max, unsigned& result) {
    char const* text = get_text();
    unsigned long long value = 0;
    for (; *text; text++) {
        if (*text < '0' || *text > '9') return false;
        value = value * 10 + static_cast<unsigned>(*text - '0');
        if (value > max) return false;
    }
    result = static_cast<unsigned>(value);
    return true;
}

shared_ptr<expr> parser::parse_name_expr() {
    ustring name = get_ustring();
    int pos = node_pos(get_token_pos());
    var_decl** local = m_scope_table.find(name);
    if (!local) return is_label(name) ? parse_labelled_expr(name) : parse_global_name_expr(name);
    shared_ptr<expr> result = (*local)->create_name_expr(pos);
    if (!(*local)->is_accessor_decl()) return result;
    // An earlier field of the constructor being parsed: the field of the value that the later accessor is
    // applied to.
    VEXOR_ASSERT(m_accessor_arg);
    m_accessor_arg_used = true;
    return mk<application>(result, m_accessor_arg->create_name_expr(pos), pos);
}

shared_ptr<expr> parser::parse_global_name_expr(ustring const& name) {
    if (!m_sharing) return m_manager->create_global_name_expr(name, get_token_pos());
    var_decl* d = m_manager->get_global_var_decl(name, get_token_pos());
    shared_ptr<name_expr>& shared = m_name_expr_cache[name];
    // The name may stand for something else since a pop.
    if (!shared || shared->get_decl() != d) shared = d->create_name_expr(-1);
    return shared;
}

template <class D>
shared_ptr<expr> parser::mk_builtin_name() {
    if (m_sharing) return m_manager->mk_name<D>();
    return m_manager->get_builtin<D>()->create_name_expr(get_token_pos());
}

// Null for a token that is no operator.
shared_ptr<expr> parser::mk_operator(token op) {
    switch (op) {
#define VEXOR_OPERATOR(OP, TEXT)                                                                             \
    case token::kw_##OP:                                                                                     \
        return mk_builtin_name<OP##_decl>();
#include "frontend/tokens.def"
    default:
        return nullptr;
    }
}

} // namespace vexor
