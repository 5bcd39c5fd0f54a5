#include "support/random_terms.h"

#include "ast/types/equivalent_types.h"

namespace vexor_test {

using namespace vexor;

random_terms::random_terms(ast_manager& m, std::uint64_t seed)
    : m_terms(m)
    , m_random(seed) {
    m.get_position_tracker().new_file("random");
    m_terms.declare_scalar("color", 3);
    m_terms.declare_type("thing");
    m_terms.declare_type("word", m_terms.bv_type(8));
    m_terms.declare_type("pair", m_terms.tuple_type({m_terms.int_type(), m_terms.bool_type()}));
    type_decl* d = m_terms.make<type_decl>(m_terms.id("list"), static_cast<type*>(nullptr), -1);
    type* list = m_terms.keep(d->create_type_name(-1));
    auto recognizer = [&](char const* name) {
        return m_terms.keep(recognizer_decl::create_recognizer_decl(m_terms.id(name), list, -1));
    };
    auto accessor = [&](char const* name, char const* r, type* range) {
        recognizer_decl* test = recognizer(r);
        type* domain = m_terms.keep(m.create_subtype_for_pred(test, -1));
        var_decl* arg = m_terms.variable("arg", domain);
        return m_terms.make<accessor_decl>(m_terms.id(name), m_terms.make<function_type>(arg, range, -1), -1);
    };
    accessor_decl* accessors[] = {accessor("head", "cons", m_terms.int_type()),
                                  accessor("tail", "cons", list)};
    constructor_decl* constructors[] = {
        m_terms.make<constructor_decl>(m_terms.id("nil"), list, recognizer("nil"), -1),
        m_terms.make<constructor_decl>(m_terms.id("cons"), accessors, 2U, list, recognizer("cons"), -1)};
    d->set_definition(m_terms.keep(m.create_datatype(constructors, 2, -1)));
    m.add_global_type_decl(d);
}

type* random_terms::random_type(unsigned depth) {
    next_position();
    switch (m_random.below(depth == 0 ? 10 : 14)) {
    case 0:
    case 1:
        return m_terms.bool_type();
    case 2:
        return m_terms.int_type();
    case 3:
        return m_terms.real_type();
    case 4:
        return m_terms.nat_type();
    case 5:
        return m_terms.bv_type(1 + m_random.below(12));
    case 6:
        return m_terms.named_type(pick({"color", "thing", "list", "word", "pair"}));
    case 7:
        return m_terms.subrange(index(m_random.below(5)), index(5 + m_random.below(5)));
    case 8:
        return m_terms.bv_type(8);
    case 9: {
        var_decl* x = m_terms.variable("elem", m_terms.int_type());
        return m_terms.make<subtype>(x, op("<", {m_terms.use(x), index(9)}), -1);
    }
    case 10:
        return m_terms.tuple_type({random_type(depth - 1), random_type(depth - 1)});
    case 11:
        return m_terms.record_type({{"fa", random_type(depth - 1)}, {"fb", random_type(depth - 1)}});
    case 12:
        return m_terms.function_type({random_type(depth - 1)}, random_type(depth - 1));
    default: {
        var_decl* n = m_terms.variable("n", m_terms.nat_type());
        return m_terms.make<function_type>(n, m_terms.subrange(index(0), m_terms.use(n)), -1);
    }
    }
}

expr* random_terms::random_term(type* t, unsigned depth) { return term(t, depth); }

expr* random_terms::term(type* t, unsigned depth) {
    if (fault()) t = random_type(1);
    if (m_sharing && chance(30))
        for (unsigned tries = 0; tries < 5 && !m_closed.empty(); ++tries) {
            expr* e = m_closed[m_random.below(static_cast<unsigned>(m_closed.size()))];
            if (m_fault_percent > 0 || equivalent_types(e->get_type(), t)) return e;
        }
    expr* e = depth == 0 || chance(10) ? leaf(t) : compound(t, depth - 1);
    if (m_sharing && !e->has_free_vars()) m_closed.push_back(e);
    return e;
}

expr* random_terms::leaf(type* t) {
    if (chance(50))
        if (expr* e = visible_variable(t)) return e;
    if (chance(30)) return constant(t);
    return literal(t);
}

expr* random_terms::literal(type* t) {
    next_position();
    type* core = core_type(t);
    if (is_a<bool_type_name>(core)) return chance(50) ? m_terms.mk_true() : m_terms.mk_false();
    if (is_a<real_type_name>(core))
        return m_terms.num(pick({"0", "1/2", "-7/3", "2", "12345678901234567890/7"}));
    if (is_a<int_type_name>(core) || is_a<nat_type_name>(core))
        return m_terms.num(pick({"0", "1", "-1", "7", "12"}));
    if (is_a<bitvector_type>(core)) {
        unsigned size = static_cast<bitvector_type*>(core)->get_size();
        unsigned value = m_random.below(1U << std::min(size, 16U));
        return m_terms.bv(size, std::to_string(value).c_str());
    }
    if (is_a<type_name>(core)) {
        ustring name = static_cast<type_name*>(core)->get_decl()->get_name();
        if (name == ustring("color")) return m_terms.name(pick({"color0", "color1", "color2"}));
        if (name == ustring("list")) return m_terms.name("nil");
    }
    return constant(t);
}

expr* random_terms::constant(type* t) {
    next_position();
    for (unsigned tries = 0; tries < 4 && !m_constants.empty(); ++tries) {
        expr* e = m_constants[m_random.below(static_cast<unsigned>(m_constants.size()))];
        if (equivalent_types(static_cast<name_expr*>(e)->get_decl()->get_type(), t))
            return m_terms.use(static_cast<name_expr*>(e)->get_decl());
    }
    expr* e = m_terms.constant(("c" + std::to_string(m_num_constants++)).c_str(), t);
    m_constants.push_back(e);
    return e;
}

expr* random_terms::visible_variable(type* t) {
    for (unsigned tries = 0; tries < 3 && !m_visible.empty(); ++tries) {
        unsigned i = m_random.below(static_cast<unsigned>(m_visible.size()));
        var_decl* d = m_visible[i];
        bool hidden = false;
        for (unsigned j = i + 1; j < m_visible.size(); ++j)
            hidden |= m_visible[j]->get_name() == d->get_name();
        if (hidden) continue;
        next_position();
        expr* use = m_terms.use(d);
        if (m_fault_percent > 0 || equivalent_types(use->get_type(), t)) return use;
    }
    return nullptr;
}

var_decl* random_terms::new_variable(type* t) {
    next_position();
    return m_terms.variable(pick({"x", "y", "z", "w"}), t);
}

expr* random_terms::app(expr* fun, exprs const& args) {
    next_position();
    return m_terms.make<application>(fun, args.data(), static_cast<unsigned>(args.size()), m_next_pos - 1);
}

expr* random_terms::op(char const* name, exprs args) {
    if (fault() && fault()) args.pop_back();
    if (fault() && fault()) args.push_back(leaf(m_terms.bool_type()));
    if (args.empty()) args.push_back(m_terms.mk_true());
    next_position();
    expr* fun = m_terms.name(name);
    return app(fun, args);
}

// A numeral that stands for an index, or with faults for a strange one.
expr* random_terms::index(unsigned value) {
    next_position();
    if (fault() && chance(40)) ++value;
    if (fault()) return m_terms.num(pick({"-1", "1/2", "4294967295", "4294967296", "16777216", "9", "0"}));
    return m_terms.num(std::to_string(value).c_str());
}

expr* random_terms::compound(type* t, unsigned depth) {
    switch (m_random.below(12)) {
    case 0:
        return op("ite", {term(m_terms.bool_type(), depth), term(t, depth), term(t, depth)});
    case 1:
        return let(t, depth);
    case 2:
        return selection(t, depth);
    case 3:
        return call(t, depth);
    default:
        break;
    }
    type* core = core_type(t);
    if (is_a<bool_type_name>(core)) return boolean(depth);
    if (is_a<int_type_name>(core) || is_a<nat_type_name>(core) || is_a<real_type_name>(core))
        return number(depth);
    if (is_a<bitvector_type>(core)) return bitvector(static_cast<bitvector_type*>(core)->get_size(), depth);
    if (is_a<function_type>(core)) return function(static_cast<function_type*>(core), depth);
    if (is_a<tuple_type>(core) || is_a<record_type>(core)) return structure(core, depth);
    if (is_a<type_name>(core) && static_cast<type_name*>(core)->get_decl()->get_name() == ustring("list"))
        return list(depth);
    return leaf(t);
}

expr* random_terms::boolean(unsigned depth) {
    type* b = m_terms.bool_type();
    switch (m_random.below(8)) {
    case 0:
        return op("not", {term(b, depth)});
    case 1:
        return op("implies", {term(b, depth), term(b, depth)});
    case 2:
    case 3: {
        exprs args;
        for (unsigned i = 1 + m_random.below(4); i > 0; --i) args.push_back(term(b, depth));
        return op(pick({"and", "or"}), args);
    }
    case 4:
        return quantifier(depth);
    case 5:
        return op(pick({"nil?", "cons?"}), {term(m_terms.named_type("list"), depth)});
    default:
        return comparison(depth);
    }
}

expr* random_terms::comparison(unsigned depth) {
    if (chance(40)) {
        type* t = random_type(1);
        return op(pick({"=", "/="}), {term(t, depth), term(t, depth)});
    }
    if (chance(20)) return op(pick({"int_pred", "real_pred"}), {term(m_terms.real_type(), depth)});
    if (chance(50)) {
        type* t = m_terms.bv_type(1 + m_random.below(9));
        char const* name = pick({"bv-lt", "bv-le", "bv-gt", "bv-ge", "sbv-lt", "sbv-le", "sbv-gt", "sbv-ge"});
        return op(name, {term(t, depth), term(t, depth)});
    }
    type* t = chance(50) ? m_terms.int_type() : m_terms.real_type();
    return op(pick({"<", "<=", ">", ">="}), {term(t, depth), term(m_terms.int_type(), depth)});
}

expr* random_terms::number(unsigned depth) {
    auto operand = [&] { return term(chance(70) ? m_terms.int_type() : m_terms.real_type(), depth); };
    switch (m_random.below(6)) {
    case 0:
        return op("/", {operand(), index(1 + m_random.below(4))});
    case 1:
        return op("head", {list(depth)});
    default: {
        exprs args;
        for (unsigned i = 1 + m_random.below(3); i > 0; --i) args.push_back(operand());
        return op(pick({"+", "-", "*"}), args);
    }
    }
}

expr* random_terms::list(unsigned depth) {
    type* t = m_terms.named_type("list");
    if (chance(30)) return op("tail", {term(t, depth)});
    return op("cons", {term(m_terms.int_type(), depth), term(t, depth)});
}

expr* random_terms::bitvector(unsigned size, unsigned depth) {
    type* t = m_terms.bv_type(size);
    if (size == 1 && chance(40)) {
        type* wide = m_terms.bv_type(1 + m_random.below(9));
        if (chance(40)) return op("bv-comp", {term(wide, depth), term(wide, depth)});
        return op(pick({"bv-redor", "bv-redand"}), {term(wide, depth)});
    }
    switch (m_random.below(5)) {
    case 0:
        return op(pick({"bv-not", "bv-neg"}), {term(t, depth)});
    case 1:
        return op(pick({"bv-shift-left0", "bv-shift-left1", "bv-shift-right0", "bv-shift-right1",
                        "bv-shift-righta", "bv-rotate_left", "bv-rotate_right"}),
                  {term(t, depth), index(m_random.below(size + 1))});
    case 2:
        return bitvector_structure(size, depth);
    default:
        return op(
            pick({"bv-and", "bv-or", "bv-xor", "bv-add", "bv-sub", "bv-mul", "bv-udiv", "bv-urem", "bv-sdiv",
                  "bv-srem", "bv-smod", "bv-shl", "bv-lshr", "bv-ashr", "bv-nand", "bv-nor", "bv-xnor"}),
            {term(t, depth), term(t, depth)});
    }
}

expr* random_terms::bitvector_structure(unsigned size, unsigned depth) {
    unsigned part = 1 + m_random.below(size);
    if (part < size && chance(40))
        return op("bv-concat",
                  {term(m_terms.bv_type(part), depth), term(m_terms.bv_type(size - part), depth)});
    if (size % part == 0 && chance(30))
        return op("bv-repeat", {term(m_terms.bv_type(part), depth), index(size / part)});
    if (chance(50))
        return op(pick({"bv-sign-extend", "bv-zero-extend"}),
                  {term(m_terms.bv_type(part), depth), index(size - part)});
    unsigned low = m_random.below(5);
    unsigned high = low + size - 1;
    expr* source = term(m_terms.bv_type(high + 1 + m_random.below(3)), depth);
    if (chance(50)) std::swap(low, high);
    return op("bv-extract", {index(low), index(high), source});
}

expr* random_terms::structure(type* t, unsigned depth) {
    bool is_tuple = is_a<tuple_type>(t);
    if (chance(40)) {
        expr* target = term(t, depth);
        if (is_tuple) {
            auto* tuple = static_cast<vexor::tuple_type*>(t);
            unsigned i = m_random.below(tuple->size());
            expr* value = term(tuple->get_element_type(i), depth);
            next_position();
            return m_terms.update(target, static_cast<int>(i) + (fault() ? 7 : 0), value);
        }
        auto* record = static_cast<vexor::record_type*>(t);
        field* f = record->get_field(m_random.below(record->size()));
        expr* value = term(f->get_type(), depth);
        next_position();
        return m_terms.update(target, fault() ? "fz" : f->get_name().c_str(), value);
    }
    if (is_tuple) {
        exprs parts;
        for (var_decl* d : static_cast<vexor::tuple_type*>(t)->get_elements())
            parts.push_back(term(d->get_type(), depth));
        next_position();
        return m_terms.make<tuple_literal>(&m_terms.manager(), parts.data(),
                                           static_cast<unsigned>(parts.size()), m_next_pos - 1);
    }
    std::vector<record_entry*> entries;
    for (field* f : static_cast<vexor::record_type*>(t)->get_fields()) {
        expr* e = term(f->get_type(), depth);
        next_position();
        entries.push_back(m_terms.make<record_entry>(m_terms.id(f->get_name().c_str()), e, m_next_pos - 1));
    }
    next_position();
    return m_terms.make<record_literal>(&m_terms.manager(), entries.data(),
                                        static_cast<unsigned>(entries.size()), m_next_pos - 1);
}

expr* random_terms::function(function_type* t, unsigned depth) {
    // Types that depend on a parameter are left to constants.
    if (t->get_range()->has_free_vars() || chance(20)) return constant(t);
    if (chance(40)) {
        expr* target = term(t, depth);
        exprs args;
        for (var_decl* p : t->get_domain()) args.push_back(term(p->get_type(), depth));
        if (fault()) args.push_back(m_terms.mk_true());
        expr* value = term(t->get_range(), depth);
        next_position();
        return m_terms.make<function_update_expr>(target, args.data(), static_cast<unsigned>(args.size()),
                                                  value, m_next_pos - 1);
    }
    std::vector<var_decl*> bindings;
    for (var_decl* p : t->get_domain()) bindings.push_back(new_variable(p->get_type()));
    m_visible.insert(m_visible.end(), bindings.begin(), bindings.end());
    expr* body = term(t->get_range(), depth);
    m_visible.resize(m_visible.size() - bindings.size());
    next_position();
    return m_terms.make<lambda_expr>(bindings.data(), static_cast<unsigned>(bindings.size()), body,
                                     m_next_pos - 1);
}

expr* random_terms::selection(type* t, unsigned depth) {
    if (chance(50)) {
        type* other = random_type(0);
        bool first = chance(50);
        type* pair = first ? m_terms.tuple_type({t, other}) : m_terms.tuple_type({other, t});
        expr* e = term(pair, depth);
        next_position();
        return m_terms.select(e, (first ? 0U : 1U) + (fault() ? 5 : 0));
    }
    expr* e = term(m_terms.record_type({{"fa", random_type(0)}, {"fc", t}}), depth);
    next_position();
    return m_terms.select(e, fault() ? "fz" : "fc");
}

expr* random_terms::let(type* t, unsigned depth) {
    std::size_t before = m_visible.size();
    std::vector<let_decl*> bindings;
    for (unsigned i = 1 + m_random.below(2); i > 0; --i) {
        type* s = random_type(1);
        expr* definition = term(s, depth);
        next_position();
        char const* name = pick({"x", "y", "z", "v"});
        bindings.push_back(m_terms.let_variable(name, chance(40) ? s : nullptr, definition));
        m_visible.push_back(bindings.back());
    }
    expr* body = term(t, depth);
    m_visible.resize(before);
    next_position();
    return m_terms.make<let_expr>(bindings.data(), static_cast<unsigned>(bindings.size()), body,
                                  m_next_pos - 1);
}

expr* random_terms::call(type* t, unsigned depth) {
    exprs args;
    std::vector<var_decl*> domain;
    for (unsigned i = 1 + m_random.below(2); i > 0; --i) {
        type* s = random_type(0);
        domain.push_back(m_terms.make<var_decl>(static_cast<identifier*>(nullptr), s, -1));
        args.push_back(term(s, depth));
    }
    if (fault() && args.size() > 1) args.pop_back();
    type* ft = m_terms.make<function_type>(domain.data(), static_cast<unsigned>(domain.size()), t, -1);
    expr* fun = fault() ? term(t, depth) : term(ft, depth);
    return app(fun, args);
}

expr* random_terms::quantifier(unsigned depth) {
    std::vector<var_decl*> bindings;
    for (unsigned i = 1 + m_random.below(2); i > 0; --i) bindings.push_back(new_variable(random_type(1)));
    m_visible.insert(m_visible.end(), bindings.begin(), bindings.end());
    expr* body = term(m_terms.bool_type(), depth);
    m_visible.resize(m_visible.size() - bindings.size());
    next_position();
    auto n = static_cast<unsigned>(bindings.size());
    if (chance(50)) return m_terms.make<forall_expr>(bindings.data(), n, body, m_next_pos - 1);
    return m_terms.make<exists_expr>(bindings.data(), n, body, m_next_pos - 1);
}

} // namespace vexor_test
