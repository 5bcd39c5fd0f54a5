#include "support/naive_types.h"

#include <algorithm>
#include <map>
#include <set>

namespace vexor_test {

using namespace vexor;

namespace {

[[noreturn]] void fail(ast const* n, char const* message) { throw naive_fault{n, message}; }

naive_type simple(naive_type::kind k) {
    naive_type t;
    t.m_kind = k;
    return t;
}

naive_type vector_of(ast const* n, unsigned long long size, char const* message) {
    if (size == 0 || size > 16777216) fail(n, message);
    naive_type t = simple(naive_type::bitvector);
    t.m_size = static_cast<unsigned>(size);
    return t;
}

naive_type widen(naive_type t) {
    if (t.m_kind == naive_type::integer) t.m_kind = naive_type::real;
    for (naive_type& part : t.m_parts) part = widen(part);
    return t;
}

// The values of both of two equivalent types.
naive_type join(naive_type const& a, naive_type const& b) {
    if (a == b) return a;
    if (a.is_number()) return simple(std::max(a.m_kind, b.m_kind));
    naive_type result = a;
    bool is_function = a.m_kind == naive_type::function;
    std::size_t last = a.m_parts.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
        if (is_function && i < last && !(a.m_parts[i] == b.m_parts[i])) return widen(a);
        result.m_parts[i] = join(a.m_parts[i], b.m_parts[i]);
    }
    return result;
}

// The value of a numeral as text, empty for other terms.
std::string numeral_text(expr* e) {
    return is_a<numeral_expr>(e) ? static_cast<numeral_expr*>(e)->get_value().to_string() : "";
}

// A natural number of at most nine digits, else -1.
long long natural(std::string const& text) {
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos)
        return -1;
    return std::stoll(text);
}

using types = std::vector<naive_type>;

void count(application* a, std::size_t n) {
    if (a->num_args() != n) fail(a, "wrong number of arguments");
}

void bitvector_arg(application* a, naive_type const& t) {
    if (t.m_kind != naive_type::bitvector) fail(a, "argument is not a bitvector.");
}

void same_size(application* a, types const& args) {
    count(a, 2);
    for (naive_type const& t : args) bitvector_arg(a, t);
    if (args[0].m_size != args[1].m_size) fail(a, "bitvectors have different sizes.");
}

// A bit-vector and a numeral.
void vector_and_numeral(application* a, types const& args) {
    count(a, 2);
    bitvector_arg(a, args[0]);
    if (numeral_text(a->get_arg(1)).empty()) fail(a, "argument must be a number.");
}

naive_type logic(application* a, std::string const& name, types const& args) {
    if (name == "not") count(a, 1);
    if (name == "implies") count(a, 2);
    for (naive_type const& t : args)
        if (t.m_kind != naive_type::boolean) fail(a, "argument is not boolean.");
    return simple(naive_type::boolean);
}

naive_type arithmetic(application* a, std::string const& name, types const& args) {
    bool relation = name[0] == '<' || name[0] == '>';
    if (relation || name == "/") count(a, 2);
    bool all_integer = true;
    for (naive_type const& t : args) {
        if (!t.is_number()) fail(a, "argument is not a numeral.");
        all_integer &= t.m_kind == naive_type::integer;
    }
    if (relation) return simple(naive_type::boolean);
    return simple(all_integer && name != "/" ? naive_type::integer : naive_type::real);
}

naive_type equation_or_ite(application* a, std::string const& name, types const& args) {
    if (name != "ite") {
        count(a, 2);
        if (!naive_equivalent(args[0], args[1])) fail(a, "incompatible types in equality.");
        return simple(naive_type::boolean);
    }
    count(a, 3);
    if (args[0].m_kind != naive_type::boolean)
        fail(a, "condition of if-then-else expression is not a boolean.");
    if (!naive_equivalent(args[1], args[2]))
        fail(a, "incompatible types in then/else braches of if-then-else.");
    return join(args[1], args[2]);
}

naive_type extraction(application* a, types const& args) {
    count(a, 3);
    std::string first = numeral_text(a->get_arg(0));
    std::string second = numeral_text(a->get_arg(1));
    if (first.empty() || second.empty()) fail(a, "argument must be a number.");
    bitvector_arg(a, args[2]);
    long long low = std::min(natural(first), natural(second));
    long long high = std::max(natural(first), natural(second));
    if (low < 0 || high >= args[2].m_size) fail(a, "invalid bitvector extract.");
    return vector_of(a, static_cast<unsigned long long>(high - low + 1), "");
}

naive_type resizing(application* a, std::string const& name, types const& args) {
    vector_and_numeral(a, args);
    long long n = natural(numeral_text(a->get_arg(1)));
    unsigned long long size = args[0].m_size;
    char const* message = name == "bv-repeat" ? "invalid repeat operation." : "invalid extend operation.";
    if (n < 0) fail(a, message);
    auto amount = static_cast<unsigned long long>(n);
    return vector_of(a, name == "bv-repeat" ? size * amount : size + amount, message);
}

naive_type bitvectors(application* a, std::string const& name, types const& args) {
    static std::set<std::string> const unary{"bv-not", "bv-neg", "bv-redor", "bv-redand"};
    static std::set<std::string> const relations{"bv-lt",  "bv-le",  "bv-gt",  "bv-ge",
                                                 "sbv-lt", "sbv-le", "sbv-gt", "sbv-ge"};
    if (name == "bv-extract") return extraction(a, args);
    if (name == "bv-repeat" || name == "bv-sign-extend" || name == "bv-zero-extend")
        return resizing(a, name, args);
    if (name.find("shift") != std::string::npos || name.find("rotate") != std::string::npos) {
        vector_and_numeral(a, args);
        long long n = natural(numeral_text(a->get_arg(1)));
        if (n < 0 || n > args[0].m_size) fail(a, "invalid shift operation.");
        return args[0];
    }
    if (name == "bv-concat") {
        unsigned long long size = 0;
        for (naive_type const& t : args) bitvector_arg(a, t);
        for (naive_type const& t : args) size += t.m_size;
        return vector_of(a, size, "invalid bitvector size.");
    }
    if (unary.contains(name)) {
        count(a, 1);
        bitvector_arg(a, args[0]);
    } else {
        same_size(a, args);
    }
    if (relations.contains(name)) return simple(naive_type::boolean);
    if (name == "bv-redor" || name == "bv-redand" || name == "bv-comp") return vector_of(a, 1, "");
    return args[0];
}

// The name of a built-in operator, empty for other terms.
std::string operator_name(expr* fun) {
    if (!fun->is_name_expr()) return "";
    var_decl* d = static_cast<name_expr*>(fun)->get_decl();
    if (!d->is_builtin() || is_true(fun) || is_false(fun)) return "";
    return d->get_name().c_str();
}

naive_type call(application* a, naive_type const& fun, types const& args) {
    if (fun.m_kind != naive_type::function) fail(a, "function expected.");
    count(a, fun.m_parts.size() - 1);
    for (std::size_t i = 0; i < args.size(); ++i)
        if (!naive_equivalent(args[i], fun.m_parts[i])) fail(a, "invalid function argument, type mismatch.");
    return fun.m_parts.back();
}

naive_type check_application(application* a) {
    std::string name = operator_name(a->get_fun());
    naive_type fun;
    if (name.empty()) fun = naive_check(a->get_fun());
    types args;
    for (expr* arg : a->get_args()) args.push_back(naive_check(arg));
    static std::set<std::string> const numbers{"+", "-", "*", "/", "<", "<=", ">", ">="};
    if (name.empty()) return call(a, fun, args);
    if (name == "int_pred" || name == "real_pred") {
        count(a, 1);
        if (!args[0].is_number()) fail(a, "invalid function argument, type mismatch.");
        return simple(naive_type::boolean);
    }
    if (name == "=" || name == "/=" || name == "ite") return equation_or_ite(a, name, args);
    if (numbers.contains(name)) return arithmetic(a, name, args);
    if (name.find("bv-") != std::string::npos) return bitvectors(a, name, args);
    return logic(a, name, args);
}

naive_type check_binding(binding_expr* n) {
    naive_type result = simple(naive_type::function);
    for (var_decl* d : n->get_bindings()) {
        naive_check_type(d->get_type());
        result.m_parts.push_back(naive_type_from(d->get_type()));
    }
    naive_type body = naive_check(n->get_expr());
    if (n->is_lambda()) {
        result.m_parts.push_back(body);
        return result;
    }
    if (body.m_kind != naive_type::boolean) fail(n, "body of quandified expression is not boolean.");
    return simple(naive_type::boolean);
}

// Types that lets gave their variables.
std::map<var_decl*, naive_type> g_let_types;

naive_type check_let(let_expr* n) {
    for (let_decl* d : n->get_bindings()) {
        bool declared = d->get_type() != nullptr;
        if (declared) naive_check_type(d->get_type());
        naive_type t = naive_check(d->get_definition());
        if (declared && !naive_equivalent(t, naive_type_from(d->get_type())))
            fail(d, "invalid let declaration, incompatible types.");
        g_let_types[d] = declared ? naive_type_from(d->get_type()) : t;
    }
    return naive_check(n->get_expr());
}

std::size_t field_index(ast* n, naive_type const& t, ustring const& name, char const* message) {
    if (t.m_kind != naive_type::record) fail(n, "record expression expected.");
    auto it = std::find(t.m_fields.begin(), t.m_fields.end(), std::string(name.c_str()));
    if (it == t.m_fields.end()) fail(n, message);
    return static_cast<std::size_t>(it - t.m_fields.begin());
}

std::size_t component_index(ast* n, naive_type const& t, long long idx) {
    if (t.m_kind != naive_type::tuple) fail(n, "tuple expression expected.");
    if (idx < 0 || idx >= static_cast<long long>(t.m_parts.size())) fail(n, "invalid tuple selection.");
    return static_cast<std::size_t>(idx);
}

naive_type replaced(naive_type t, std::size_t i, naive_type const& value) {
    t.m_parts[i] = join(t.m_parts[i], value);
    return t;
}

naive_type check_function_update(function_update_expr* n) {
    naive_type t = naive_check(n->get_target());
    types args;
    for (expr* arg : n->get_args()) args.push_back(naive_check(arg));
    naive_type value = naive_check(n->get_new_value());
    if (t.m_kind != naive_type::function) fail(n, "function expected.");
    if (t.m_parts.size() - 1 != args.size()) fail(n, "invalid function update, wrong number of arguments.");
    for (std::size_t i = 0; i < args.size(); ++i)
        if (!naive_equivalent(args[i], t.m_parts[i]))
            fail(n, "invalid function update index, type mismatch.");
    if (!naive_equivalent(value, t.m_parts.back()))
        fail(n, "invalid function update new value, type mismatch.");
    return replaced(t, args.size(), value);
}

naive_type check_update(update_expr* n) {
    naive_type t = naive_check(n->get_target());
    naive_type value = naive_check(n->get_new_value());
    if (is_a<tuple_update_expr>(n)) {
        std::size_t i = component_index(n, t, static_cast<tuple_update_expr*>(n)->get_idx());
        if (!naive_equivalent(value, t.m_parts[i]))
            fail(n,
                 "invalid tuple update, the new value type is incompatible with the specified tuple position "
                 "type.");
        return replaced(t, i, value);
    }
    std::size_t i = field_index(n, t, static_cast<record_update_expr*>(n)->get_name(),
                                "invalid record update, unknown field.");
    if (!naive_equivalent(value, t.m_parts[i]))
        fail(n, "invalid record update, the new value type is incompatible with field type.");
    return replaced(t, i, value);
}

naive_type check_literal(expr* e) {
    naive_type t;
    if (is_a<tuple_literal>(e)) {
        t.m_kind = naive_type::tuple;
        for (expr* part : static_cast<tuple_literal*>(e)->get_exprs()) t.m_parts.push_back(naive_check(part));
        return t;
    }
    t.m_kind = naive_type::record;
    for (record_entry* entry : static_cast<record_literal*>(e)->get_entries()) {
        t.m_fields.emplace_back(entry->get_name().c_str());
        t.m_parts.push_back(naive_check(entry->get_expr()));
    }
    return t;
}

naive_type check_name(name_expr* n) {
    var_decl* d = n->get_decl();
    if (d->is_let_decl()) return g_let_types.at(d);
    return naive_type_from(d->get_type());
}

} // namespace

naive_type naive_type_from(type* t) {
    if (is_a<bool_type_name>(t)) return simple(naive_type::boolean);
    if (is_a<int_type_name>(t) || is_a<nat_type_name>(t) || is_a<subrange>(t))
        return simple(naive_type::integer);
    if (is_a<real_type_name>(t)) return simple(naive_type::real);
    if (is_a<number_type_name>(t)) return simple(naive_type::number);
    if (is_a<subtype>(t)) return naive_type_from(static_cast<subtype*>(t)->get_decl()->get_type());
    naive_type result;
    if (is_a<type_name>(t)) {
        auto* name = static_cast<type_name*>(t);
        type* definition = name->get_definition();
        if (definition != nullptr && !is_a<scalar_type>(definition) && !is_a<datatype>(definition))
            return naive_type_from(definition);
        result.m_kind = naive_type::nominal;
        result.m_decl = name->get_decl();
    } else if (is_a<bitvector_type>(t)) {
        result.m_kind = naive_type::bitvector;
        result.m_size = static_cast<bitvector_type*>(t)->get_size();
    } else if (is_a<tuple_type>(t)) {
        result.m_kind = naive_type::tuple;
        for (var_decl* d : static_cast<tuple_type*>(t)->get_elements())
            result.m_parts.push_back(naive_type_from(d->get_type()));
    } else if (is_a<record_type>(t)) {
        result.m_kind = naive_type::record;
        for (field* f : static_cast<record_type*>(t)->get_fields()) {
            result.m_fields.emplace_back(f->get_name().c_str());
            result.m_parts.push_back(naive_type_from(f->get_type()));
        }
    } else if (is_a<function_type>(t)) {
        result.m_kind = naive_type::function;
        for (var_decl* d : static_cast<function_type*>(t)->get_domain())
            result.m_parts.push_back(naive_type_from(d->get_type()));
        result.m_parts.push_back(naive_type_from(static_cast<function_type*>(t)->get_range()));
    }
    return result;
}

bool naive_equivalent(naive_type const& a, naive_type const& b) { return widen(a) == widen(b); }

void naive_check_type(type* t) {
    if (is_a<bitvector_type>(t)) {
        vector_of(t, static_cast<bitvector_type*>(t)->get_size(), "invalid bitvector size.");
    } else if (is_a<tuple_type>(t)) {
        for (var_decl* d : static_cast<tuple_type*>(t)->get_elements()) naive_check_type(d->get_type());
    } else if (is_a<record_type>(t)) {
        for (field* f : static_cast<record_type*>(t)->get_fields()) naive_check_type(f->get_type());
    } else if (is_a<function_type>(t)) {
        for (var_decl* d : static_cast<function_type*>(t)->get_domain()) naive_check_type(d->get_type());
        naive_check_type(static_cast<function_type*>(t)->get_range());
    } else if (is_a<subrange>(t)) {
        naive_type lower = naive_check(static_cast<subrange*>(t)->get_lower());
        naive_type upper = naive_check(static_cast<subrange*>(t)->get_upper());
        if (!lower.is_number() || !upper.is_number()) fail(t, "invalid subrange.");
    } else if (is_a<subtype>(t)) {
        naive_check_type(static_cast<subtype*>(t)->get_decl()->get_type());
        if (naive_check(static_cast<subtype*>(t)->get_pred()).m_kind != naive_type::boolean)
            fail(t, "invalid subtype, the predicate is not boolean.");
    }
}

naive_type naive_check(expr* e) {
    if (is_a<numeral_expr>(e))
        return simple(numeral_text(e).find('/') == std::string::npos ? naive_type::integer
                                                                     : naive_type::real);
    if (is_a<bitvector_constant>(e))
        return vector_of(e, static_cast<bitvector_constant*>(e)->get_size(), "invalid bitvector size.");
    if (e->is_name_expr()) return check_name(static_cast<name_expr*>(e));
    if (e->is_application()) return check_application(static_cast<application*>(e));
    if (e->is_quantified_expr() || e->is_lambda()) return check_binding(static_cast<binding_expr*>(e));
    if (is_a<let_expr>(e)) return check_let(static_cast<let_expr*>(e));
    if (is_a<function_update_expr>(e)) return check_function_update(static_cast<function_update_expr*>(e));
    if (is_a<tuple_update_expr>(e) || is_a<record_update_expr>(e))
        return check_update(static_cast<update_expr*>(e));
    if (is_a<tuple_selection>(e)) {
        auto* n = static_cast<tuple_selection*>(e);
        naive_type t = naive_check(n->get_tuple());
        return t.m_parts[component_index(n, t, n->get_idx())];
    }
    if (is_a<record_selection>(e)) {
        auto* n = static_cast<record_selection*>(e);
        naive_type t = naive_check(n->get_record());
        return t.m_parts[field_index(n, t, n->get_name(), "invalid record selection, unknown field.")];
    }
    return check_literal(e);
}

} // namespace vexor_test
