#include "ast/print/pp_visitor.h"

#include "ast/types/op_rules.h"
#include "base/deep_stack.h"

#include <algorithm>
#include <string>

namespace vexor {

using pp::composite;
using pp::composite_doc;
using pp::doc;
using pp::text;

namespace {

shared_ptr<doc> name_doc(ustring const& name) { return text(name.c_str()); }

// The spelling of an operator in the native language where it is not its name in the table of constants.
constexpr char const* op_spelling(char const* name) {
    struct spelling {
        std::string_view m_name;
        char const* m_printed;
    };
    constexpr spelling differing[] = {{"implies", "=>"},
                                      {"sbv-lt", "bv-slt"},
                                      {"sbv-le", "bv-sle"},
                                      {"sbv-gt", "bv-sgt"},
                                      {"sbv-ge", "bv-sge"}};
    for (spelling const& s : differing)
        if (s.m_name == name) return s.m_printed;
    return name;
}

} // namespace

pp::layout_config term_layout_config() {
    pp::layout_config config = pp::g_default_layout_config;
    config.m_max_indent = std::max(0, std::min(config.m_max_indent, config.m_max_width / 4 * 3));
    return config;
}

shared_ptr<doc> pp_visitor::operator()(ast const* a) {
    return on_deep_stack([&] {
        reset();
        shared_ptr<doc> result = accept(const_cast<ast*>(a));
        reset();
        return result;
    });
}

void pp_visitor::reset() {
    m_result.reset();
    m_docs.reset();
    m_accessor_args.reset();
}

bool pp_visitor::is_worth_sharing(ast* a) {
    if (a->get_ref_count() < 2) return false;
    if (a->is_expr())
        return !static_cast<expr*>(a)->is_name_expr() && !is_a<numeral_expr>(a) &&
               !is_a<bitvector_constant>(a) && !is_a<typed_constant>(a);
    return is_a<function_type>(a) || is_a<tuple_type>(a) || is_a<record_type>(a) || is_a<subtype>(a) ||
           is_a<subrange>(a);
}

shared_ptr<doc> pp_visitor::accept(ast* a) {
    bool shared = is_worth_sharing(a);
    if (shared)
        if (shared_ptr<doc>* known = m_docs.find(a)) return *known;
    shared_ptr<doc> result = accept_core(a);
    if (shared) m_docs.insert(a, result);
    return result;
}

shared_ptr<doc> pp_visitor::accept_core(ast* a) {
    check_depth();
    m_result.reset();
    a->accept(this);
    VEXOR_ASSERT(m_result.get() != nullptr);
    return m_result;
}

template <class T>
pp_visitor::docs pp_visitor::accept_all(child_array<T> const& children) {
    docs result;
    result.reserve(children.size());
    for (T* child : children) result.push_back(accept(child));
    return result;
}

void pp_visitor::form(shared_ptr<doc> const& head, docs const& rest) {
    m_result = pp::pp_seq_style2(head, rest, m_indent);
}

void pp_visitor::form(char const* keyword, docs const& rest) { form(text(keyword), rest); }

void pp_visitor::visit(ast* n) { m_result = text(n->get_cls_name()); }

void pp_visitor::visit(identifier* n) { m_result = name_doc(n->get_name()); }

void pp_visitor::visit(decl* n) { m_result = name_doc(n->get_name()); }

// A parameter: x::T, or T alone without a name.
void pp_visitor::visit(var_decl* n) {
    shared_ptr<doc> type_doc = accept(n->get_type());
    if (n->is_anonymous()) {
        m_result = type_doc;
        return;
    }
    shared_ptr<composite_doc> d = composite();
    d << name_doc(n->get_name()) << "::" << type_doc;
    m_result = d;
}

// (x e) or (x::T e)
void pp_visitor::visit(let_decl* n) {
    shared_ptr<composite_doc> head = composite();
    head << name_doc(n->get_name());
    if (n->get_declared_type() != nullptr) head << "::" << accept(n->get_declared_type());
    form(head, {accept(n->get_definition())});
}

// (define f::T) or (define f::T e)
void pp_visitor::visit(const_decl* n) {
    shared_ptr<composite_doc> head = composite();
    head << "define " << name_doc(n->get_name()) << "::" << accept(n->get_type());
    docs rest;
    if (n->has_definition()) rest.push_back(accept(n->get_raw_definition()));
    form(head, rest);
}

// In a datatype: c or (c field::T ...)
void pp_visitor::visit(constructor_decl* n) {
    if (n->num_accessors() == 0) {
        m_result = name_doc(n->get_name());
        return;
    }
    docs fields;
    for (unsigned i = 0; i < n->num_accessors(); ++i) {
        accessor_decl* field = n->get_accessor(i);
        if (auto* t = cast_type<function_type>(field->get_type())) m_accessor_args.insert(t->get_param(0));
        shared_ptr<composite_doc> d = composite();
        d << name_doc(field->get_name()) << "::" << accept(field->get_result_type());
        fields.push_back(d);
    }
    form(name_doc(n->get_name()), fields);
}

// (define-type t) or (define-type t T)
void pp_visitor::visit(type_decl* n) {
    shared_ptr<composite_doc> head = composite();
    head << "define-type " << name_doc(n->get_name());
    docs rest;
    if (n->get_definition() != nullptr) rest.push_back(accept(n->get_definition()));
    form(head, rest);
}

void pp_visitor::visit(type_name* n) { m_result = name_doc(n->get_decl()->get_name()); }

void pp_visitor::visit(function_type* n) {
    docs parts = accept_all(n->get_domain());
    parts.push_back(accept(n->get_range()));
    form("->", parts);
}

void pp_visitor::visit(tuple_type* n) { form("tuple", accept_all(n->get_elements())); }

void pp_visitor::visit(record_type* n) { form("record", accept_all(n->get_fields())); }

void pp_visitor::visit(scalar_type* n) {
    docs names;
    for (scalar_element_decl* element : n->get_elements()) names.push_back(name_doc(element->get_name()));
    form("scalar", names);
}

void pp_visitor::visit(datatype* n) { form("datatype", accept_all(n->get_constructors())); }

void pp_visitor::visit(bitvector_type* n) { form("bitvector", {pp::unsigned2doc(n->get_size())}); }

void pp_visitor::visit(subtype* n) {
    shared_ptr<composite_doc> head = composite();
    head << "subtype (" << accept(n->get_decl()) << ")";
    form(head, {accept(n->get_pred())});
}

void pp_visitor::visit(subrange* n) {
    shared_ptr<doc> lower = accept(n->get_lower());
    form("subrange", {lower, accept(n->get_upper())});
}

void pp_visitor::visit(record_entry* n) {
    shared_ptr<composite_doc> d = composite();
    d << name_doc(n->get_name()) << "::" << accept(n->get_expr());
    m_result = d;
}

void pp_visitor::visit(name_expr* n) { m_result = name_doc(n->get_name()); }

// The type of a field may depend on an earlier field, which the source names alone: the accessor applied to
// the parameter that stands for the value.
bool pp_visitor::is_accessor_of_own_argument(application* n) const {
    if (n->num_args() != 1 || !is_a<accessor_name_expr>(n->get_fun()) || !n->get_arg(0)->is_name_expr())
        return false;
    return m_accessor_args.contains(static_cast<name_expr*>(n->get_arg(0))->get_decl());
}

void pp_visitor::visit(application* n) {
    shared_ptr<doc> head = accept(n->get_fun());
    if (is_accessor_of_own_argument(n)) {
        m_result = head;
        return;
    }
    docs args = accept_all(n->get_args());
    unsigned high = 0;
    unsigned low = 0;
    if (is_app_of<bv_extract_name_expr>(n) && get_extract_bounds(n, high, low)) {
        args[0] = pp::unsigned2doc(high);
        args[1] = pp::unsigned2doc(low);
    }
    form(head, args);
}

void pp_visitor::visit_binding(char const* keyword, binding_expr* n) {
    shared_ptr<composite_doc> head = composite();
    head << keyword << " " << pp::pp_seq_style1(accept_all(n->get_bindings()), m_indent);
    form(head, {accept(n->get_expr())});
}

void pp_visitor::visit(let_expr* n) {
    shared_ptr<composite_doc> head = composite();
    head << "let " << pp::pp_seq_style1(accept_all(n->get_bindings()), m_indent);
    form(head, {accept(n->get_expr())});
}

void pp_visitor::visit(local_context_expr* n) {
    docs parts{accept(n->get_expr())};
    for (shared_ptr<doc> const& condition : accept_all(n->get_context())) parts.push_back(condition);
    form("local-ctx", parts);
}

void pp_visitor::visit(function_update_expr* n) {
    docs parts{accept(n->get_target())};
    parts.push_back(pp::pp_seq_style1(accept_all(n->get_args()), m_indent));
    parts.push_back(accept(n->get_new_value()));
    form("update", parts);
}

void pp_visitor::visit(tuple_update_expr* n) {
    docs parts{accept(n->get_target()), pp::int2doc(n->get_idx())};
    parts.push_back(accept(n->get_new_value()));
    form("update", parts);
}

void pp_visitor::visit(record_update_expr* n) {
    docs parts{accept(n->get_target()), name_doc(n->get_name())};
    parts.push_back(accept(n->get_new_value()));
    form("update", parts);
}

void pp_visitor::visit(numeral_expr* n) { m_result = text(n->get_value().to_string()); }

void pp_visitor::visit(bitvector_constant* n) {
    std::string digits = "0b";
    for (unsigned i = n->get_size(); i > 0; --i) digits += n->get_value().test_bit(i - 1) ? '1' : '0';
    m_result = text(std::move(digits));
}

void pp_visitor::visit(tuple_literal* n) { form("mk-tuple", accept_all(n->get_exprs())); }

void pp_visitor::visit(tuple_selection* n) {
    form("select", {accept(n->get_tuple()), pp::unsigned2doc(n->get_idx())});
}

void pp_visitor::visit(record_literal* n) { form("mk-record", accept_all(n->get_entries())); }

void pp_visitor::visit(record_selection* n) {
    form("select", {accept(n->get_record()), name_doc(n->get_name())});
}

void pp_visitor::visit(typed_constant* n) { m_result = pp::int2doc(n->get_value()); }

#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    void pp_visitor::visit(X##_name_expr*) { m_result = text(op_spelling(TEXT)); }
#include "ast/node/builtin_ops.def"

} // namespace vexor
