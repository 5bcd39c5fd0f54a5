// Tuples, records and data types.
#include "ast/node/ast_manager.h"
#include "simplify/simplify_visitor.h"

namespace vexor {

// Of a literal only the component that is selected is looked at.
void simplify_visitor::visit(tuple_selection* n) {
    if (is_a<tuple_literal>(n->get_tuple())) {
        auto* literal = static_cast<tuple_literal*>(n->get_tuple());
        if (n->get_idx() < literal->size()) {
            accept_core(literal->get_expr(n->get_idx()));
            return;
        }
    }
    shared_ptr<expr> tuple = image_of(n->get_tuple());
    if (tuple.get() == n->get_tuple())
        keep(n);
    else
        m_result = create_selection(tuple.get(), n->get_idx(), n->get_pos());
}

void simplify_visitor::visit(record_selection* n) {
    if (is_a<record_literal>(n->get_record())) {
        if (record_entry* e = static_cast<record_literal*>(n->get_record())->find_entry(n->get_name())) {
            accept_core(e->get_expr());
            return;
        }
    }
    shared_ptr<expr> record = image_of(n->get_record());
    if (record.get() == n->get_record())
        keep(n);
    else
        m_result = create_selection(record.get(), n->get_id_node(), n->get_pos());
}

shared_ptr<expr> simplify_visitor::create_selection(expr* tuple, unsigned idx, int pos) {
    if (is_a<tuple_literal>(tuple) && idx < static_cast<tuple_literal*>(tuple)->size())
        return static_cast<tuple_literal*>(tuple)->get_expr(idx);
    return mk<tuple_selection>(tuple, idx, pos);
}

shared_ptr<expr> simplify_visitor::create_selection(expr* record, identifier* id, int pos) {
    if (is_a<record_literal>(record))
        if (record_entry* e = static_cast<record_literal*>(record)->find_entry(id->get_name()))
            return e->get_expr();
    return mk<record_selection>(record, id, pos);
}

// (update t i v)  to  (mk-tuple (select t 0) ... v ... (select t n))
//
// An update of something else than a tuple with that place stays: it is a type error.
void simplify_visitor::visit(tuple_update_expr* n) {
    auto* of = cast_type<tuple_type>(n->get_target()->get_type());
    if (of == nullptr || n->get_idx() < 0 || static_cast<unsigned>(n->get_idx()) >= of->size())
        return map_ext_visitor::visit(n);
    auto idx = static_cast<unsigned>(n->get_idx());
    shared_ptr<expr> target = image_of(n->get_target());
    shared_ptr<expr> new_value = image_of(n->get_new_value());
    image_list parts(*this);
    for (unsigned i = 0; i < of->size(); ++i)
        parts.push_back(i == idx ? new_value.get() : create_selection(target.get(), i, -1).get());
    m_result = mk<tuple_literal>(n->get_manager(), parts.data(), parts.size(), n->get_pos());
}

// (update r f v)  to  (mk-record ... f v ... g (select r g) ...)
void simplify_visitor::visit(record_update_expr* n) {
    auto* of = cast_type<record_type>(n->get_target()->get_type());
    if (of == nullptr || of->find_field(n->get_name()) == nullptr) return map_ext_visitor::visit(n);
    shared_ptr<expr> target = image_of(n->get_target());
    shared_ptr<expr> new_value = image_of(n->get_new_value());
    shared_ptr_vector<record_entry> entries;
    for (field* f : of->get_fields()) {
        bool is_new = f->get_name() == n->get_name();
        shared_ptr<expr> part = is_new ? new_value : create_selection(target.get(), f->get_id_node(), -1);
        entries.push_back(mk<record_entry>(f->get_id_node(), part, -1).get());
    }
    m_result = mk<record_literal>(n->get_manager(), entries.data(), entries.size(), n->get_pos());
}

namespace {

// The constructor that an image is built with, null if that is not known.
constructor_decl* constructor_of(expr* e) {
    if (e->is_application()) e = to_app(e)->get_fun();
    return is_a<constructor_name_expr>(e) ? static_cast<constructor_name_expr*>(e)->get_constructor()
                                          : nullptr;
}

} // namespace

// (accessor (constructor ... v ...))  to  v, for an accessor of that constructor. Of a value built with
// another constructor an accessor gives anything.
void simplify_visitor::visit(accessor_name_expr* fun, application* a) {
    if (a->num_args() != 1) return process_app(a);
    shared_ptr<expr> arg = image_of(a->get_arg(0));
    accessor_decl* d = fun->get_accessor();
    auto place = static_cast<unsigned>(d->get_index());
    if (d->get_constructor() != nullptr && constructor_of(arg.get()) == d->get_constructor() &&
        arg->is_application() && place < to_app(arg.get())->num_args())
        m_result = to_app(arg.get())->get_arg(place);
    else
        rebuild(a, arg.get());
}

// (constructor? (constructor ...))  to  true, and to false for a value built with another one.
void simplify_visitor::visit(recognizer_name_expr* fun, application* a) {
    if (a->num_args() != 1) return process_app(a);
    shared_ptr<expr> arg = image_of(a->get_arg(0));
    constructor_decl* c = constructor_of(arg.get());
    if (c == nullptr) return rebuild(a, arg.get());
    ast_manager* m = a->get_manager();
    m_result = c == fun->get_recognizer()->get_constructor() ? m->mk_true() : m->mk_false();
}

void simplify_visitor::rebuild(application* a, expr* arg) {
    if (arg == a->get_arg(0))
        keep(a);
    else
        m_result = a->clone(&arg, 1);
}

} // namespace vexor
