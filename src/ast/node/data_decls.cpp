#include "ast/node/data_decls.h"

#include "ast/node/ast_manager.h"
#include "ast/visit/depends_on_visitor.h"

namespace vexor {

scalar_element_decl::scalar_element_decl(identifier* id, type_name* name, scalar_type* owner, int index,
                                         int pos)
    : const_decl(id, name, pos)
    , m_scalar_type(owner)
    , m_index(index) {}

accessor_decl::accessor_decl(identifier* id, type* t, int pos)
    : const_decl(id, t, pos) {}

type* accessor_decl::get_result_type() const { return cast_type<function_type>(get_type())->get_range(); }

datatype* accessor_decl::get_datatype() const {
    return m_constructor == nullptr ? nullptr : m_constructor->get_datatype();
}

void accessor_decl::setup(constructor_decl* c, int index) {
    m_constructor = c;
    m_index = index;
    get_manager()->add_global_const_decl(this, false);
}

recognizer_decl::recognizer_decl(identifier* id, type* t, int pos)
    : const_decl(id, t, pos) {}

shared_ptr<recognizer_decl> recognizer_decl::create_recognizer_decl(identifier* constructor, type* datatype,
                                                                    int pos) {
    ast_manager* m = datatype->get_manager();
    ustring name = constructor->get_name();
    name.append(ustring("?"));
    shared_ptr<identifier> id = mk<identifier>(constructor, name);
    shared_ptr<function_type> t = function_type::construct_unary(datatype, m->create_bool_type(), pos);
    return mk<recognizer_decl>(id, t, pos);
}

datatype* recognizer_decl::get_datatype() const {
    return m_constructor == nullptr ? nullptr : m_constructor->get_datatype();
}

void recognizer_decl::setup(constructor_decl* c) {
    m_constructor = c;
    get_manager()->add_global_const_decl(this, false);
}

namespace {

shared_ptr<type> constructor_type(accessor_decl* const* accessors, unsigned n, type* t, int pos) {
    if (n == 0) return t;
    ptr_vector<type> domain;
    for (unsigned i = 0; i < n; ++i) domain.push_back(accessors[i]->get_result_type());
    return function_type::construct(domain.data(), n, t, pos);
}

bool mentions(accessor_decl* const* accessors, unsigned n, type* t) {
    type_name* name = t->as_type_name();
    if (name == nullptr) return false;
    simple_depends_on_visitor v;
    for (unsigned i = 0; i < n; ++i)
        if (v.depends(accessors[i]->get_result_type(), name->get_decl())) return true;
    return false;
}

} // namespace

constructor_decl::constructor_decl(identifier* id, accessor_decl* const* accessors, unsigned n, type* t,
                                   recognizer_decl* r, int pos)
    : const_decl(id, constructor_type(accessors, n, t, pos).get(), pos)
    , m_mentions_datatype(mentions(accessors, n, t))
    , m_recognizer(r)
    , m_accessors(sizeof(constructor_decl), accessors, n) {}

constructor_decl::constructor_decl(identifier* id, type* t, recognizer_decl* r, int pos)
    : constructor_decl(id, nullptr, 0, t, r, pos) {}

constructor_decl::~constructor_decl() {
    for (accessor_decl* a : m_accessors)
        if (a->get_constructor() == this) a->detach();
    if (m_recognizer.get() != nullptr && m_recognizer->get_constructor() == this) m_recognizer->detach();
}

void constructor_decl::setup(datatype* owner, int index) {
    m_datatype = owner;
    m_index = index;
    get_manager()->add_global_const_decl(this, false);
    if (m_recognizer.get() != nullptr) m_recognizer->setup(this);
    for (unsigned i = 0; i < num_accessors(); ++i) get_accessor(i)->setup(this, static_cast<int>(i));
}

#define VEXOR_DATA_NAME(X)                                                                                   \
    shared_ptr<name_expr> X##_decl::create_name_expr(int pos) { return mk<X##_name_expr>(this, pos); }
VEXOR_DATA_NAME(true)
VEXOR_DATA_NAME(false)
VEXOR_DATA_NAME(accessor)
VEXOR_DATA_NAME(recognizer)
VEXOR_DATA_NAME(constructor)
#undef VEXOR_DATA_NAME

shared_ptr<name_expr> scalar_element_decl::create_name_expr(int pos) {
    return mk<scalar_name_expr>(this, pos);
}

} // namespace vexor
