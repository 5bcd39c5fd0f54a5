#include "random_text.h"

#include <algorithm>

namespace vexor_test {

char const* const random_text::world =
    "(define-type color (scalar red green blue))"
    "(define-type list (datatype nil (cons head::int tail::list)))"
    "(define p::bool)(define q::bool)(define x::int)(define y::int)(define r::real)(define s::real)"
    "(define a4::(bitvector 4))(define b4::(bitvector 4))(define a8::(bitvector 8))(define b8::(bitvector 8))"
    "(define t::(tuple int bool))(define m::(record key::int val::bool))(define f::(-> int int))(define "
    "g::(-> int int))"
    "(define c::color)(define l::list)";

namespace {

std::vector<std::string> const global_names[] = {{"p", "q", "true", "false"},
                                                 {"x", "y"},
                                                 {"r", "s"},
                                                 {"a4", "b4"},
                                                 {"a8", "b8"},
                                                 {"t"},
                                                 {"m"},
                                                 {"f", "g"},
                                                 {"c", "red", "green", "blue"},
                                                 {"l", "nil"}};
std::string const type_names[] = {"bool",
                                  "int",
                                  "real",
                                  "(bitvector 4)",
                                  "(bitvector 8)",
                                  "(tuple int bool)",
                                  "(record key::int val::bool)",
                                  "(-> int int)",
                                  "color",
                                  "list"};

} // namespace

std::string random_text::space() {
    if (!chance(10)) return " ";
    return pick({"  ", "\n", "\t", " ; a comment (\n", "\r\n "});
}

random_text::term random_text::form(std::string const& source_head, std::string const& printed_head,
                                    std::vector<term> const& parts) {
    term result{"(" + (chance(5) ? space() : "") + source_head, "(" + printed_head};
    for (term const& each : parts) {
        result.source += space() + each.source;
        result.printed += " " + each.printed;
    }
    result.source += chance(5) ? space() + ")" : ")";
    result.printed += ")";
    return result;
}

random_text::term random_text::part(sort s, unsigned depth) {
    if (chance(m_ill_typed)) s = random_sort();
    return make(s, depth);
}

random_text::term random_text::make(sort s, unsigned depth) {
    if (depth == 0 || chance(20)) return leaf(s);
    return compound(s, depth - 1);
}

random_text::term random_text::leaf(sort s) {
    if (chance(40)) {
        if (s == integer) return integer_literal();
        if (s == real) return real_literal();
        if (s == bits4) return bits_literal(4);
        if (s == bits8) return bits_literal(8);
    }
    return name(s);
}

// A variable that no inner one of the same name hides, or a constant that none hides.
random_text::term random_text::name(sort s) {
    std::vector<std::string> candidates;
    for (std::size_t i = m_locals.size(); i-- > 0;) {
        bool hidden = std::any_of(m_locals.begin() + static_cast<std::ptrdiff_t>(i) + 1, m_locals.end(),
                                  [&](local const& inner) { return inner.name == m_locals[i].name; });
        if (m_locals[i].s == s && !hidden) candidates.push_back(m_locals[i].name);
    }
    if (!candidates.empty() && !chance(40)) return plain(pick(candidates));
    candidates = global_names[s];
    for (local const& each : m_locals) std::erase(candidates, each.name);
    return candidates.empty() ? integer_literal()
                              : plain(pick(candidates)); // only those of int can all be hidden
}

random_text::term random_text::integer_literal() {
    int value = m_random.between(-20, 20);
    std::string digits = std::to_string(std::abs(value));
    std::string sign = value < 0 ? "-" : "";
    if (chance(10)) return {sign + digits + "/1", sign + digits};
    if (chance(10)) return {sign + "00" + digits, sign + digits};
    if (chance(5)) return plain(sign + (digits == "0" ? "1" : digits) + "00000000000000000000");
    return plain(sign + digits);
}

// A multiple of a fraction in lowest terms.
random_text::term random_text::real_literal() {
    static std::vector<std::pair<int, int>> const fractions = {{1, 2}, {-2, 3}, {7, 5}, {-1, 9}, {3, 1}};
    auto [numerator, denominator] = fractions[m_random.below(static_cast<unsigned>(fractions.size()))];
    int factor = m_random.between(1, 12);
    std::string printed = std::to_string(numerator);
    if (denominator != 1) printed += "/" + std::to_string(denominator);
    return {std::to_string(numerator * factor) + "/" + std::to_string(denominator * factor), printed};
}

random_text::term random_text::bits_literal(unsigned size) {
    unsigned value = m_random.below(1u << size);
    std::string digits;
    for (unsigned i = size; i-- > 0;) digits += (value >> i & 1) != 0 ? '1' : '0';
    std::string printed = "0b" + digits;
    if (chance(50)) return {std::to_string(m_random.below(10)) + "b" + digits, printed};
    unsigned long congruent = value + (1ul << size) * m_random.below(3);
    return {"(mk-bv " + std::to_string(size) + " " + std::to_string(congruent) + ")", printed};
}

random_text::term random_text::compound(sort s, unsigned depth) {
    if (chance(10)) return let(s, depth);
    if (chance(5)) return beta_redex(s, depth);
    if (chance(10))
        return form(pick({"if", "ite"}), "ite", {part(boolean, depth), part(s, depth), part(s, depth)});
    switch (s) {
    case boolean:
        return boolean_form(depth);
    case integer:
    case real:
        return arithmetic_form(s, depth);
    case bits4:
        return bits4_form(depth);
    case bits8:
        return bits8_form(depth);
    case pair:
        if (chance(50)) return form("mk-tuple", {part(integer, depth), part(boolean, depth)});
        if (chance(50)) return form("update", {part(pair, depth), plain("0"), part(integer, depth)});
        return form("update", {part(pair, depth), {"01", "1"}, part(boolean, depth)});
    case record:
        return record_literal(depth);
    case function:
        return updated_function(depth);
    case list:
        if (chance(60)) return form("cons", {part(integer, depth), part(list, depth)});
        return form("tail", {part(list, depth)});
    default:
        return leaf(s);
    }
}

random_text::term random_text::let(sort s, unsigned depth) {
    term bindings{"(", "("};
    std::size_t outer = m_locals.size();
    for (unsigned i = m_random.below(4); i > 0; i--) {
        sort bound = random_sort();
        term definition = part(bound, depth / 2);
        std::string head = pick({"u", "v", "x", "p"});
        std::string type = chance(30) ? "::" + type_names[bound] : "";
        bindings.source += space() + "(" + head + type + space() + definition.source + ")";
        bindings.printed +=
            (bindings.printed == "(" ? "(" : " (") + head + type + " " + definition.printed + ")";
        m_locals.push_back({head, bound});
    }
    bindings.source += ")";
    bindings.printed += ")";
    term result = form("let", {bindings, part(s, depth)});
    m_locals.resize(outer);
    return result;
}

random_text::term random_text::beta_redex(sort s, unsigned depth) {
    sort argument_sort = random_sort();
    term argument = part(argument_sort, depth / 2);
    m_locals.push_back({pick({"u", "w", "y", "f"}), argument_sort});
    term variables = plain("(" + m_locals.back().name + "::" + type_names[argument_sort] + ")");
    term lambda = form("lambda", {variables, part(s, depth)});
    m_locals.pop_back();
    return form(lambda.source, lambda.printed, {argument});
}

random_text::term random_text::quantified(unsigned depth) {
    std::size_t outer = m_locals.size();
    std::string variables;
    for (unsigned i = 1 + m_random.below(3); i > 0; i--) {
        sort s = random_sort();
        m_locals.push_back({pick({"k", "h", "x", "c"}), s});
        variables += (variables.empty() ? "(" : " ") + m_locals.back().name + "::" + type_names[s];
    }
    term result = form(pick({"forall", "exists"}), {plain(variables + ")"), part(boolean, depth)});
    m_locals.resize(outer);
    return result;
}

random_text::term random_text::boolean_form(unsigned depth) {
    sort s = random_sort();
    sort number = chance(50) ? integer : real;
    sort bits = chance(50) ? bits4 : bits8;
    switch (m_random.below(9)) {
    case 0: {
        std::vector<term> parts;
        for (unsigned i = 1 + m_random.below(4); i > 0; i--) parts.push_back(part(boolean, depth));
        return form(pick({"and", "or"}), parts);
    }
    case 1:
        return form("not", {part(boolean, depth)});
    case 2:
        return form(pick({"=>", "implies"}), "=>", {part(boolean, depth), part(boolean, depth)});
    case 3:
        return form(pick({"=", "/="}), {part(s, depth), part(s, depth)});
    case 4:
        return form(pick({"<", "<=", ">", ">="}), {part(number, depth), part(number, depth)});
    case 5: {
        if (chance(50))
            return form(pick({"bv-lt", "bv-le", "bv-gt", "bv-ge"}), {part(bits, depth), part(bits, depth)});
        std::string comparison = pick({"lt", "le", "gt", "ge"});
        return form(pick({"bv-s", "sbv-"}) + comparison, "bv-s" + comparison,
                    {part(bits, depth), part(bits, depth)});
    }
    case 6:
        return form(pick({"nil?", "cons?"}), {part(list, depth)});
    case 7:
        return form(pick({"int_pred", "real_pred"}), {part(real, depth)});
    default:
        return chance(50) ? quantified(depth) : selection(boolean, depth);
    }
}

random_text::term random_text::selection(sort s, unsigned depth) {
    if (chance(50)) return form("select", {part(pair, depth), plain(s == integer ? "0" : "1")});
    return form("select", {part(record, depth), plain(s == integer ? "key" : "val")});
}

random_text::term random_text::record_literal(unsigned depth) {
    term key = part(integer, depth);
    term val = part(boolean, depth);
    if (chance(50)) return form("update", {part(record, depth), plain("key"), key});
    // The fields of the printed form are in the order of their names.
    std::string source_key = "key::" + key.source;
    std::string source_val = "val ::" + space() + val.source;
    bool swapped = chance(50);
    return form("mk-record", {{swapped ? source_val : source_key, "key::" + key.printed},
                              {swapped ? source_key : source_val, "val::" + val.printed}});
}

random_text::term random_text::updated_function(unsigned depth) {
    if (chance(30)) {
        m_locals.push_back({pick({"u", "k", "x"}), integer});
        term variables = plain("(" + m_locals.back().name + "::int)");
        term result = form("lambda", {variables, part(integer, depth)});
        m_locals.pop_back();
        return result;
    }
    term place = part(integer, depth);
    return form(
        "update",
        {part(function, depth), {"(" + place.source + ")", "(" + place.printed + ")"}, part(integer, depth)});
}

random_text::term random_text::arithmetic_form(sort s, unsigned depth) {
    switch (m_random.below(6)) {
    case 0:
        if (s == real) return form("/", {part(real, depth), real_literal()});
        return form("head", {part(list, depth)});
    case 1:
        if (s == integer) return selection(integer, depth);
        break;
    case 2:
        if (s == integer) {
            term fun = part(function, depth);
            return form(fun.source, fun.printed, {part(integer, depth)});
        }
        break;
    default:
        break;
    }
    std::vector<term> parts;
    for (unsigned i = 1 + m_random.below(4); i > 0; i--) parts.push_back(part(s, depth));
    return form(pick({"+", "-", "*"}), parts);
}

random_text::term random_text::bits_form(sort s, unsigned depth) {
    static std::vector<std::string> const binary = {
        "bv-add",  "bv-sub",  "bv-mul", "bv-and",  "bv-or",   "bv-xor",  "bv-udiv", "bv-urem", "bv-shl",
        "bv-lshr", "bv-nand", "bv-nor", "bv-xnor", "bv-sdiv", "bv-srem", "bv-smod", "bv-ashr"};
    static std::vector<std::string> const shifts = {"bv-shift-left0",  "bv-shift-left1",  "bv-shift-right0",
                                                    "bv-shift-right1", "bv-shift-righta", "bv-rotate_left",
                                                    "bv-rotate_right"};
    if (chance(60)) return form(pick(binary), {part(s, depth), part(s, depth)});
    if (chance(50)) return form(pick(shifts), {part(s, depth), plain(std::to_string(m_random.below(5)))});
    return form(pick({"bv-not", "bv-neg"}), {part(s, depth)});
}

random_text::term random_text::bits4_form(unsigned depth) {
    if (chance(60)) return bits_form(bits4, depth);
    if (chance(30)) {
        term bit = form(pick({"bv-redor", "bv-redand"}), {part(bits8, depth)});
        return form("bv-repeat", {bit, plain("4")});
    }
    if (chance(30)) {
        term bit = form("bv-comp", {part(bits8, depth), part(bits8, depth)});
        return form("bv-zero-extend", {bit, plain("3")});
    }
    unsigned low = m_random.below(5);
    std::string high_text = std::to_string(low + 3);
    std::string low_text = std::to_string(low);
    bool swapped = chance(50);
    return form("bv-extract", {{swapped ? low_text : high_text, high_text},
                               {swapped ? high_text : low_text, low_text},
                               part(bits8, depth)});
}

random_text::term random_text::bits8_form(unsigned depth) {
    if (chance(60)) return bits_form(bits8, depth);
    if (chance(50)) return form("bv-concat", {part(bits4, depth), part(bits4, depth)});
    return form(pick({"bv-sign-extend", "bv-zero-extend"}), {part(bits4, depth), plain("4")});
}

} // namespace vexor_test
