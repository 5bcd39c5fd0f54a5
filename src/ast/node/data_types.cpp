#include "ast/node/data_types.h"

#include "ast/node/application.h"
#include "ast/node/ast_manager.h"

namespace vexor {

namespace {

// The elements point to their type, whose construction is under way; only its address is taken.
shared_ptr_vector<scalar_element_decl> make_elements(type_decl* d, identifier* const* ids, unsigned n,
                                                     scalar_type* owner) {
    shared_ptr_vector<scalar_element_decl> elements;
    for (unsigned i = 0; i < n; ++i) {
        int pos = ids[i]->get_pos();
        shared_ptr<type_name> name = d->create_type_name(pos);
        elements.push_back(
            mk<scalar_element_decl>(ids[i], name.get(), owner, static_cast<int>(i), pos).get());
    }
    return elements;
}

} // namespace

scalar_type::scalar_type(type_decl* d, identifier* const* ids, unsigned n, int pos)
    : type(pos)
    , m_elements(sizeof(scalar_type), make_elements(d, ids, n, this).data(), n) {
    set_free_vars_state(free_vars_state::none);
}

scalar_type::~scalar_type() {
    for (scalar_element_decl* e : m_elements) e->detach();
}

shared_ptr<type> scalar_type::clone() const { return const_cast<scalar_type*>(this); }

void scalar_type::set_elements(scalar_element_decl* const* elements, unsigned n) {
    m_elements.assign(elements, n);
    reset_cache();
}

datatype::datatype(ast_manager*, constructor_decl* const* constructors, unsigned n, int pos)
    : type(pos)
    , m_constructors(sizeof(datatype), constructors, n) {
    set_free_vars_state(free_vars_state::none);
}

datatype::~datatype() {
    for (constructor_decl* c : m_constructors)
        if (c->get_datatype() == this) c->detach();
}

void datatype::setup() {
    for (unsigned i = 0; i < size(); ++i) get_constructor(i)->setup(this, static_cast<int>(i));
}

shared_ptr<type> datatype::clone() const { return const_cast<datatype*>(this); }

bitvector_type::bitvector_type(ast_manager*, unsigned size, int pos)
    : type(pos)
    , m_size(size) {
    set_free_vars_state(free_vars_state::none);
}

shared_ptr<type> bitvector_type::clone() const {
    return mk<bitvector_type>(get_manager(), get_size(), get_pos());
}

void bitvector_type::set_size(unsigned size) {
    m_size = size;
    reset_cache();
}

subtype::subtype(var_decl* d, expr* pred, int pos)
    : type(pos)
    , m_decl(d)
    , m_pred(pred) {}

subtype::subtype(std::pair<var_decl*, expr*> const& d_and_pred, int pos)
    : subtype(d_and_pred.first, d_and_pred.second, pos) {}

subtype::subtype(int pos)
    : type(pos) {}

subtype::~subtype() = default;

ast* subtype::compatible_norm() { return compatible_representative(this); }

type* subtype::cast_step() { return m_decl->get_type(); }

shared_ptr<type> subtype::clone() const { return clone(get_decl(), get_pred()); }

shared_ptr<subtype> subtype::clone(var_decl* d, expr* pred) const { return mk<subtype>(d, pred, get_pos()); }

void subtype::set_decl(var_decl* d) {
    m_decl = d;
    reset_cache();
}

void subtype::set_pred(expr* pred) {
    m_pred = pred;
    reset_cache();
}

subrange::subrange(expr* lower, expr* upper, int pos)
    : subtype(pos) {
    set_bounds(lower, upper);
}

subrange::~subrange() = default;

shared_ptr<type> subrange::clone() const { return mk<subrange>(get_lower(), get_upper(), get_pos()); }

void subrange::set_bounds(expr* lower, expr* upper) {
    auto [d, pred] = create_subrange_pred(lower, upper, get_pos());
    m_lower = lower;
    m_upper = upper;
    set_decl(d.get());
    set_pred(pred.get());
}

std::pair<shared_ptr<var_decl>, shared_ptr<expr>> create_subrange_pred(expr* lower, expr* upper, int pos) {
    ast_manager* m = lower->get_manager();
    type* t = m->create_int_type();
    shared_ptr<var_decl> d = mk<var_decl>(mk<identifier>(t), t, pos);
    shared_ptr<name_expr> value = d->create_name_expr(pos);
    expr* le = m->mk_name<le_decl>();
    shared_ptr<application> above = mk<application>(le, lower, value.get(), pos);
    shared_ptr<application> below = mk<application>(le, value.get(), upper, pos);
    shared_ptr<expr> both = mk<application>(m->mk_name<and_decl>(), above.get(), below.get(), pos);
    return {d, both};
}

} // namespace vexor
