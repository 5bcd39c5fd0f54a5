#include "support/term_evaluator.h"

#include "ast/node/ast_manager.h"
#include "ast/types/op_rules.h"

#include <stdexcept>
#include <string>

using namespace vexor;

namespace vexor_test {

namespace {

using word = unsigned long;

[[noreturn]] void unknown(ast const* n) {
    throw std::logic_error(std::string("no value for ") + n->get_cls_name());
}

value number(numeral const& n) { return {n, {}}; }
value truth(bool b) { return number(b ? 1 : 0); }

std::vector<std::vector<value>> product(std::vector<std::vector<value>> const& columns) {
    std::vector<std::vector<value>> rows{{}};
    for (auto const& column : columns) {
        std::vector<std::vector<value>> longer;
        for (auto const& row : rows)
            for (value const& v : column) {
                longer.push_back(row);
                longer.back().push_back(v);
            }
        rows = longer;
    }
    return rows;
}

unsigned width_of(expr* e) { return get_bitvector_type(e)->get_size(); }
word ones(unsigned width) { return (word{1} << width) - 1; }
long to_signed(word w, unsigned width) {
    return (w >> (width - 1)) & 1 ? long(w) - (long{1} << width) : long(w);
}

word udiv(word a, word b, unsigned width) { return b == 0 ? ones(width) : a / b; }
word urem(word a, word b) { return b == 0 ? a : a % b; }

} // namespace

bool value::operator<(value const& other) const {
    if (!(m_number == other.m_number)) return m_number < other.m_number;
    return m_parts < other.m_parts;
}

std::vector<value> term_evaluator::all_values(type* t) {
    std::vector<value> result;
    if (is_a<subtype>(t)) {
        auto* s = static_cast<subtype*>(t);
        for (value const& v : all_values(s->get_decl()->get_type())) {
            m_variables[s->get_decl()] = v;
            if (is_true(s->get_pred())) result.push_back(v);
        }
        return result;
    }
    if (auto* bv = cast_type<bitvector_type>(t)) {
        for (word w = 0; w <= ones(bv->get_size()); ++w) result.push_back(number(w));
        return result;
    }
    if (is_a<nat_type_name>(t)) return {number(0), number(1), number(2)};
    if (cast_type<bool_type_name>(t)) return {truth(false), truth(true)};
    if (auto* s = cast_type<scalar_type>(t)) {
        for (unsigned i = 0; i < s->size(); ++i) result.push_back(number(i));
        return result;
    }
    if (auto* tuple = cast_type<tuple_type>(t)) {
        std::vector<std::vector<value>> columns;
        for (unsigned i = 0; i < tuple->size(); ++i)
            columns.push_back(all_values(tuple->get_element_type(i)));
        for (auto& row : product(columns)) result.push_back({0, row});
        return result;
    }
    if (auto* record = cast_type<record_type>(t)) {
        std::vector<std::vector<value>> columns;
        for (field* f : record->get_fields()) columns.push_back(all_values(f->get_type()));
        for (auto& row : product(columns)) result.push_back({0, row});
        return result;
    }
    if (auto* f = cast_type<function_type>(t)) {
        std::vector<std::vector<value>> domain, columns;
        for (unsigned i = 0; i < f->get_arity(); ++i) domain.push_back(all_values(f->get_param_type(i)));
        for (std::size_t i = 0; i < product(domain).size(); ++i)
            columns.push_back(all_values(f->get_range()));
        for (auto& row : product(columns)) result.push_back({0, row});
        return result;
    }
    if (is_a<int_type_name>(t)) return {number(-1), number(0), number(1), number(2)};
    if (cast_type<number_type_name>(t)) return {number(0), number(numeral(1) / numeral(2)), number(1)};
    unknown(t);
}

value term_evaluator::random_value(type* t, random_stream& random) {
    if (auto* f = cast_type<function_type>(t)) {
        std::vector<std::vector<value>> domain;
        for (unsigned i = 0; i < f->get_arity(); ++i) domain.push_back(all_values(f->get_param_type(i)));
        value result;
        for (std::size_t i = 0; i < product(domain).size(); ++i)
            result.m_parts.push_back(random_value(f->get_range(), random));
        return result;
    }
    std::vector<value> all = all_values(t);
    return all[random.below(static_cast<unsigned>(all.size()))];
}

std::size_t term_evaluator::index_of(type* t, std::vector<value> const& args) {
    auto* f = cast_type<function_type>(t);
    std::size_t index = 0;
    for (unsigned i = 0; i < f->get_arity(); ++i) {
        std::vector<value> all = all_values(f->get_param_type(i));
        std::size_t place = 0;
        while (place < all.size() && !(all[place] == args[i])) ++place;
        if (place == all.size()) place = 0; // outside of the small domain
        index = index * all.size() + place;
    }
    return index;
}

value term_evaluator::apply_function(value const& f, type* t, std::vector<value> const& args) {
    return f.m_parts[index_of(t, args)];
}

value term_evaluator::evaluate_binder(binding_expr* b) {
    std::vector<std::vector<value>> columns;
    for (var_decl* d : b->get_bindings()) columns.push_back(all_values(d->get_type()));
    auto outer = m_variables;
    value result;
    bool some = false, all = true;
    for (auto const& row : product(columns)) {
        for (unsigned i = 0; i < row.size(); ++i) m_variables[b->get_binding(i)] = row[i];
        value v = (*this)(b->get_expr());
        result.m_parts.push_back(v);
        some |= !v.m_number.is_zero();
        all &= !v.m_number.is_zero();
    }
    m_variables = outer;
    if (b->is_lambda()) return result;
    return truth(is_a<forall_expr>(b) ? all : some);
}

value term_evaluator::update(update_expr* u) {
    value result = (*this)(u->get_target());
    value v = (*this)(u->get_new_value());
    if (is_a<tuple_update_expr>(u)) {
        result.m_parts[static_cast<tuple_update_expr*>(u)->get_idx()] = v;
    } else if (is_a<record_update_expr>(u)) {
        auto* r = cast_type<record_type>(u->get_target()->get_type());
        for (unsigned i = 0; i < r->size(); ++i)
            if (r->get_field(i)->get_name() == static_cast<record_update_expr*>(u)->get_name())
                result.m_parts[i] = v;
    } else {
        std::vector<value> args;
        for (expr* arg : static_cast<function_update_expr*>(u)->get_args()) args.push_back((*this)(arg));
        result.m_parts[index_of(u->get_target()->get_type(), args)] = v;
    }
    return result;
}

value term_evaluator::operator()(expr* e) {
    if (e->is_application()) return evaluate_application(to_app(e));
    if (e->is_scalar()) return number(static_cast<scalar_name_expr*>(e)->get_element()->get_index());
    if (e->is_name_expr()) {
        var_decl* d = static_cast<name_expr*>(e)->get_decl();
        if (d->is_const_decl() && static_cast<const_decl*>(d)->has_definition())
            return (*this)(static_cast<const_decl*>(d)->get_raw_definition());
        auto& values = d->is_const_decl() ? m_constants : m_variables;
        auto found = values.find(d);
        if (found == values.end()) throw std::logic_error("no value for a name");
        return found->second;
    }
    if (is_a<numeral_expr>(e)) return number(static_cast<numeral_expr*>(e)->get_value());
    if (is_a<bitvector_constant>(e)) {
        auto* c = static_cast<bitvector_constant*>(e);
        return number(mod_2k(c->get_value(), c->get_size()));
    }
    if (e->is_quantified_expr() || e->is_lambda()) return evaluate_binder(static_cast<binding_expr*>(e));
    if (is_a<let_expr>(e)) {
        auto* let = static_cast<let_expr*>(e);
        auto outer = m_variables;
        for (let_decl* d : let->get_bindings()) m_variables[d] = (*this)(d->get_definition());
        value result = (*this)(let->get_expr());
        m_variables = outer;
        return result;
    }
    if (is_a<tuple_selection>(e)) {
        auto* s = static_cast<tuple_selection*>(e);
        return (*this)(s->get_tuple()).m_parts[s->get_idx()];
    }
    if (is_a<record_selection>(e)) {
        auto* s = static_cast<record_selection*>(e);
        auto* r = cast_type<record_type>(s->get_record()->get_type());
        for (unsigned i = 0; i < r->size(); ++i)
            if (r->get_field(i)->get_name() == s->get_name()) return (*this)(s->get_record()).m_parts[i];
    }
    value result;
    if (is_a<tuple_literal>(e)) {
        for (expr* part : static_cast<tuple_literal*>(e)->get_exprs())
            result.m_parts.push_back((*this)(part));
        return result;
    }
    if (is_a<record_literal>(e)) {
        for (record_entry* part : static_cast<record_literal*>(e)->get_entries())
            result.m_parts.push_back((*this)(part->get_expr()));
        return result;
    }
    if (is_a<tuple_update_expr>(e) || is_a<record_update_expr>(e) || e->is_function_update())
        return update(static_cast<update_expr*>(e));
    unknown(e);
}

value term_evaluator::evaluate_application(application* a) {
    expr* fun = a->get_fun();
    if (fun->is_bv_operator()) return evaluate_bv(a);
    if (fun->is_name_expr() && static_cast<name_expr*>(fun)->get_decl()->is_builtin())
        return evaluate_operator(fun, a);
    std::vector<value> args;
    for (expr* arg : a->get_args()) args.push_back((*this)(arg));
    if (fun->is_lambda()) {
        auto outer = m_variables;
        auto* l = static_cast<lambda_expr*>(fun);
        for (unsigned i = 0; i < args.size(); ++i) m_variables[l->get_binding(i)] = args[i];
        value result = (*this)(l->get_expr());
        m_variables = outer;
        return result;
    }
    return apply_function((*this)(fun), fun->get_type(), args);
}

value term_evaluator::evaluate_operator(expr* fun, application* a) {
    auto arg = [&](unsigned i) { return (*this)(a->get_arg(i)); };
    auto test = [&](unsigned i) { return is_true(a->get_arg(i)); };
    unsigned n = a->num_args();
    if (is_a<and_name_expr>(fun) || is_a<or_name_expr>(fun)) {
        bool stops = is_a<or_name_expr>(fun);
        for (unsigned i = 0; i < n; ++i)
            if (test(i) == stops) return truth(stops);
        return truth(!stops);
    }
    if (is_a<implies_name_expr>(fun)) return truth(!test(0) || test(1));
    if (is_a<not_name_expr>(fun)) return truth(!test(0));
    if (is_a<ite_name_expr>(fun)) return test(0) ? arg(1) : arg(2);
    if (is_a<eq_name_expr>(fun)) return truth(arg(0) == arg(1));
    if (is_a<diseq_name_expr>(fun)) return truth(!(arg(0) == arg(1)));
    if (is_a<real_pred_name_expr>(fun)) return truth(true);
    numeral x = arg(0).m_number;
    if (is_a<int_pred_name_expr>(fun)) return truth(x.is_int());
    if (is_a<sub_name_expr>(fun) && n == 1) return number(-x);
    numeral y = arg(1).m_number;
    if (is_a<lt_name_expr>(fun)) return truth(x < y);
    if (is_a<le_name_expr>(fun)) return truth(x <= y);
    if (is_a<gt_name_expr>(fun)) return truth(x > y);
    if (is_a<ge_name_expr>(fun)) return truth(x >= y);
    if (is_a<div_name_expr>(fun)) return number(x / y);
    for (unsigned i = 1; i < n; ++i) {
        y = arg(i).m_number;
        if (is_a<add_name_expr>(fun))
            x += y;
        else if (is_a<sub_name_expr>(fun))
            x -= y;
        else if (is_a<mul_name_expr>(fun))
            x *= y;
        else
            unknown(fun);
    }
    return number(x);
}

// Widths are far below the 64 bits of a word.
value term_evaluator::evaluate_bv(application* a) {
    expr* fun = a->get_fun();
    std::vector<word> v;
    for (expr* arg : a->get_args()) v.push_back(static_cast<word>((*this)(arg).m_number.get_long()));
    auto bits = [](word w, unsigned width) { return number(w & ones(width)); };
    auto is = [&](auto* cls) { return is_a<std::remove_pointer_t<decltype(cls)>>(fun); };
#define IS(X) is(static_cast<X##_name_expr*>(nullptr))
    if (IS(bv_extract)) {
        unsigned high = static_cast<unsigned>(std::max(v[0], v[1]));
        unsigned low = static_cast<unsigned>(std::min(v[0], v[1]));
        return bits(v[2] >> low, high - low + 1);
    }
    if (IS(bv_concat)) {
        word w = v[0];
        for (unsigned i = 1; i < v.size(); ++i) w = (w << width_of(a->get_arg(i))) | v[i];
        return number(w);
    }
    unsigned width = width_of(a->get_arg(0));
    word x = v[0], y = v.size() > 1 ? v[1] : 0;
    long sx = to_signed(x, width), sy = to_signed(y & ones(width), width);
    unsigned k = static_cast<unsigned>(y);
    word fill = k >= width ? ones(width) : ones(width) & ~(ones(width) >> k); // the k highest bits
    bool negative = sx < 0;
    if (IS(bv_not)) return bits(~x, width);
    if (IS(bv_minus)) return bits(0 - x, width);
    if (IS(bv_redor)) return truth(x != 0);
    if (IS(bv_redand)) return truth(x == ones(width));
    if (IS(bv_sign_extend)) return bits(static_cast<word>(sx), width + k);
    if (IS(bv_zero_extend)) return number(x);
    if (IS(bv_repeat)) {
        word w = x;
        for (unsigned i = 1; i < k; ++i) w = (w << width) | x;
        return number(w);
    }
    if (IS(bv_rotate_left) || IS(bv_rotate_right)) {
        k %= width;
        if (IS(bv_rotate_right)) k = (width - k) % width;
        return bits((x << k) | (x >> (width - k)), width);
    }
    if (IS(bv_shift_left0)) return bits(x << k, width);
    if (IS(bv_shift_left1)) return bits((x << k) | ones(k), width);
    if (IS(bv_shift_right0)) return bits(x >> k, width);
    if (IS(bv_shift_right1)) return bits((x >> k) | fill, width);
    if (IS(bv_shift_righta)) return bits((x >> k) | (negative ? fill : 0), width);
    if (IS(bv_shl)) return bits(k >= width ? 0 : x << k, width);
    if (IS(bv_lshr)) return bits(k >= width ? 0 : x >> k, width);
    if (IS(bv_ashr)) return bits((k >= width ? 0 : x >> k) | (negative ? fill : 0), width);
    if (IS(bv_comp)) return truth(x == y);
    if (IS(bv_lt)) return truth(x < y);
    if (IS(bv_le)) return truth(x <= y);
    if (IS(bv_gt)) return truth(x > y);
    if (IS(bv_ge)) return truth(x >= y);
    if (IS(sbv_lt)) return truth(sx < sy);
    if (IS(sbv_le)) return truth(sx <= sy);
    if (IS(sbv_gt)) return truth(sx > sy);
    if (IS(sbv_ge)) return truth(sx >= sy);
    for (unsigned i = 1; i < v.size(); ++i) {
        y = v[i];
        if (IS(bv_add))
            x += y;
        else if (IS(bv_sub))
            x -= y;
        else if (IS(bv_mul))
            x *= y;
        else if (IS(bv_and))
            x &= y;
        else if (IS(bv_or))
            x |= y;
        else if (IS(bv_xor))
            x ^= y;
        else if (IS(bv_nand))
            x = ~(x & y);
        else if (IS(bv_nor))
            x = ~(x | y);
        else if (IS(bv_xnor))
            x = ~(x ^ y);
        else if (IS(bv_udiv))
            x = udiv(x, y, width);
        else if (IS(bv_urem))
            x = urem(x, y);
        else
            unknown(fun);
    }
#undef IS
    return bits(x, width);
}

} // namespace vexor_test
