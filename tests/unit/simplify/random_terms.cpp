#include "random_terms.h"

#include "ast/types/op_rules.h"

#include <algorithm>
#include <string>

using namespace vexor;

namespace vexor_test {

random_terms::random_terms(ast_manager& m)
    : t(m) {
    m_boolean = t.bool_type();
    m_colour = t.declare_scalar("colour", 3);
    m_vector = t.bv_type(2);
    m_predicate = t.function_type({m_colour}, m_boolean);
    auto constant = [&](std::string const& name, type* of) {
        expr* e = t.constant(name.c_str(), of);
        m_constants.push_back(static_cast<name_expr*>(e)->get_decl());
        return e;
    };
    for (unsigned i = 0; i < 3; ++i) {
        constant("b" + std::to_string(i), m_boolean);
        constant("c" + std::to_string(i), m_colour);
    }
    for (unsigned width = 1; width <= 4; ++width)
        for (unsigned i = 0; i < 2; ++i)
            constant("v" + std::to_string(width) + "_" + std::to_string(i), t.bv_type(width));
    constant("p", m_predicate);
    constant("q", m_predicate);
    constant("tuple0", t.tuple_type({m_boolean, m_colour}));
    constant("record0", t.record_type({{"flag", m_boolean}, {"hue", m_colour}}));
    var_decl* x = t.variable("x", m_colour);
    m_some_colour = t.make<subtype>(x, t.app(t.name("q"), {t.use(x)}), -1);
    var_decl* y = t.variable("y", m_colour);
    expr* body = t.op("or", {t.app(t.name("p"), {t.use(y)}), t.op("=", {t.use(y), t.name("c0")})});
    auto* d = t.make<const_decl>(t.id("defined"), m_predicate, t.lambda({y}, body), -1);
    t.manager().add_global_const_decl(d, true);
}

void random_terms::choose_constants(term_evaluator& eval, random_stream& random) {
    for (var_decl* d : m_constants) eval.m_constants[d] = eval.random_value(d->get_type(), random);
}

expr* random_terms::variable_of(random_stream& random, type* of) {
    std::vector<var_decl*> fit;
    for (var_decl* d : m_scope)
        if (d->get_type() == of) fit.push_back(d);
    return fit.empty() ? nullptr : t.use(fit[random.below(static_cast<unsigned>(fit.size()))]);
}

// The same declaration may be bound again inside of its own scope.
var_decl* random_terms::new_variable(random_stream& random) {
    if (!m_scope.empty() && random.chance(15)) {
        var_decl* d = m_scope[random.below(static_cast<unsigned>(m_scope.size()))];
        if (!d->is_let_decl()) return d;
    }
    type* types[] = {m_boolean, m_colour, m_some_colour, m_vector};
    return t.variable("x", types[random.below(4)]);
}

expr* random_terms::quantifier(random_stream& random, unsigned depth) {
    std::size_t outer = m_scope.size();
    std::vector<var_decl*> variables;
    for (unsigned i = 1 + random.below(2); i-- > 0;) {
        var_decl* d = new_variable(random);
        if (std::find(variables.begin(), variables.end(), d) != variables.end()) continue;
        variables.push_back(d);
        m_scope.push_back(d);
    }
    expr* body = boolean(random, depth);
    m_scope.resize(outer);
    auto n = static_cast<unsigned>(variables.size());
    if (random.chance(50)) return t.make<forall_expr>(variables.data(), n, body, -1);
    return t.make<exists_expr>(variables.data(), n, body, -1);
}

expr* random_terms::with_let(random_stream& random, unsigned depth) {
    var_decl* d;
    switch (random.below(3)) {
    case 0:
        d = t.let_variable("l", m_boolean, boolean(random, depth));
        break;
    case 1:
        d = t.let_variable("l", m_colour, colour(random, depth));
        break;
    default:
        d = t.let_variable("l", m_predicate, predicate(random, depth));
    }
    m_scope.push_back(d);
    expr* body = boolean(random, depth);
    m_scope.pop_back();
    return t.let({static_cast<let_decl*>(d)}, body);
}

expr* random_terms::boolean(random_stream& random, unsigned depth) {
    if (depth == 0) {
        if (expr* e = random.chance(60) ? variable_of(random, m_boolean) : nullptr) return e;
        if (random.chance(15)) return random.chance(50) ? t.mk_true() : t.mk_false();
        if (!m_pool.empty() && random.chance(20))
            return m_pool[random.below(static_cast<unsigned>(m_pool.size()))];
        return t.name(("b" + std::to_string(random.below(3))).c_str());
    }
    --depth;
    if (random.chance(m_binder_percent))
        return random.chance(70) ? quantifier(random, depth) : with_let(random, depth);
    if (random.chance(m_bv_percent)) return bv_relation(random, depth);
    auto sub = [&] { return boolean(random, depth); };
    expr* e = nullptr;
    switch (random.below(10)) {
    case 0:
        e = t.op("not", {sub()});
        break;
    case 1:
        e = t.op("and", {sub(), sub()});
        break;
    case 2:
        e = t.op("or", {sub(), sub(), sub()});
        break;
    case 3:
        e = t.op("implies", {sub(), sub()});
        break;
    case 4:
        e = t.op("ite", {sub(), sub(), sub()});
        break;
    case 5:
        e = t.op(random.chance(50) ? "=" : "/=", {sub(), sub()});
        break;
    case 6:
        e = t.op(random.chance(50) ? "=" : "/=", {colour(random, depth), colour(random, depth)});
        break;
    case 7:
        e = t.app(predicate(random, depth), {colour(random, depth)});
        break;
    case 8:
        e = t.select(pair(random, depth), 0u);
        break;
    default:
        e = t.select(point(random, depth), "flag");
    }
    if (m_scope.empty() && random.chance(20)) m_pool.push_back(e);
    return e;
}

expr* random_terms::colour(random_stream& random, unsigned depth) {
    if (depth == 0) {
        expr* e =
            random.chance(60) ? variable_of(random, random.chance(70) ? m_colour : m_some_colour) : nullptr;
        if (e != nullptr) return e;
        if (random.chance(30)) return t.name(("colour" + std::to_string(random.below(3))).c_str());
        return t.name(("c" + std::to_string(random.below(3))).c_str());
    }
    --depth;
    switch (random.below(4)) {
    case 0:
        return t.op("ite", {boolean(random, depth), colour(random, depth), colour(random, depth)});
    case 1:
        return t.select(pair(random, depth), 1);
    case 2:
        return t.select(point(random, depth), "hue");
    default:
        return colour(random, 0);
    }
}

expr* random_terms::predicate(random_stream& random, unsigned depth) {
    if (depth == 0) {
        if (expr* e = random.chance(60) ? variable_of(random, m_predicate) : nullptr) return e;
        return t.name(random.chance(30) ? "defined" : random.chance(50) ? "p" : "q");
    }
    --depth;
    switch (random.below(4)) {
    case 0:
        return t.update(predicate(random, depth), {colour(random, depth)}, boolean(random, depth));
    case 1: {
        var_decl* x = !m_scope.empty() && random.chance(30)
                          ? m_scope[random.below(static_cast<unsigned>(m_scope.size()))]
                          : t.variable("x", m_colour);
        if (x->get_type() != m_colour || x->is_let_decl()) x = t.variable("x", m_colour);
        m_scope.push_back(x);
        expr* body = boolean(random, depth);
        m_scope.pop_back();
        return t.lambda({x}, body);
    }
    case 2:
        return t.op("ite", {boolean(random, depth), predicate(random, depth), predicate(random, depth)});
    default:
        return predicate(random, 0);
    }
}

expr* random_terms::pair(random_stream& random, unsigned depth) {
    if (depth == 0) return t.name("tuple0");
    --depth;
    if (random.chance(40)) return t.tuple({boolean(random, depth), colour(random, depth)});
    if (random.chance(50)) return t.update(pair(random, depth), 0, boolean(random, depth));
    return t.update(pair(random, depth), 1, colour(random, depth));
}

expr* random_terms::point(random_stream& random, unsigned depth) {
    if (depth == 0) return t.name("record0");
    --depth;
    if (random.chance(40))
        return t.record({{"hue", colour(random, depth)}, {"flag", boolean(random, depth)}});
    if (random.chance(50)) return t.update(point(random, depth), "flag", boolean(random, depth));
    return t.update(point(random, depth), "hue", colour(random, depth));
}

expr* random_terms::bv_relation(random_stream& random, unsigned depth) {
    static char const* const relations[] = {"=",     "=",      "/=",     "bv-lt",  "bv-le", "bv-gt",
                                            "bv-ge", "sbv-lt", "sbv-le", "sbv-gt", "sbv-ge"};
    unsigned width = 1 + random.below(m_max_width);
    return t.op(relations[random.below(11)], {bits(random, width, depth), bits(random, width, depth)});
}

expr* random_terms::bits(random_stream& random, unsigned width, unsigned depth) {
    auto number = [&](unsigned n) { return t.num(std::to_string(n).c_str()); };
    if (depth == 0 || width > 4) {
        if (width == 2 && random.chance(50))
            if (expr* e = variable_of(random, m_vector)) return e;
        if (width > 4 && depth > 0)
            return t.op("bv-concat", {bits(random, width - 4, depth - 1), bits(random, 4, depth - 1)});
        if (width > 4 || random.chance(40))
            return t.bv(width, std::to_string(random.chance(30) ? 0 : random.below(1u << width)).c_str());
        return t.name(("v" + std::to_string(width) + "_" + std::to_string(random.below(2))).c_str());
    }
    --depth;
    auto sub = [&] { return bits(random, width, depth); };
    static char const* const binary[] = {"bv-add",  "bv-sub", "bv-mul",  "bv-and", "bv-or",   "bv-xor",
                                         "bv-add",  "bv-sub", "bv-nand", "bv-nor", "bv-xnor", "bv-udiv",
                                         "bv-urem", "bv-shl", "bv-lshr", "bv-ashr"};
    switch (random.below(8)) {
    case 0:
        return t.op(random.chance(50) ? "bv-neg" : "bv-not", {sub()});
    case 1: {
        static char const* const shifts[] = {"bv-shift-left0",  "bv-shift-left1",  "bv-shift-right0",
                                             "bv-shift-right1", "bv-shift-righta", "bv-rotate_left",
                                             "bv-rotate_right"};
        return t.op(shifts[random.below(7)], {sub(), number(random.below(width + 1))});
    }
    case 2: {
        unsigned low = random.below(3), rest = random.below(3);
        return t.op("bv-extract",
                    {number(low + width - 1), number(low), bits(random, width + low + rest, depth)});
    }
    case 3: {
        if (width == 1) return t.op("bv-comp", {bits(random, 2, depth), bits(random, 2, depth)});
        unsigned low = 1 + random.below(width - 1);
        return t.op("bv-concat", {bits(random, width - low, depth), bits(random, low, depth)});
    }
    case 4: {
        if (width == 1) return t.op(random.chance(50) ? "bv-redor" : "bv-redand", {bits(random, 3, depth)});
        unsigned more = 1 + random.below(width - 1);
        return t.op(random.chance(50) ? "bv-sign-extend" : "bv-zero-extend",
                    {bits(random, width - more, depth), number(more)});
    }
    case 5:
        return t.op("ite", {boolean(random, depth), sub(), sub()});
    default:
        return t.op(binary[random.below(16)], {sub(), sub()});
    }
}

} // namespace vexor_test
