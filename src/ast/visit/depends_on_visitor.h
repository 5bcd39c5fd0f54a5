// Does a term mention a declaration?
#pragma once

#include "ast/visit/for_each_visitor.h"

namespace vexor {

// Any member of a set of variables and constants.
class depends_on_visitor : public for_each_visitor {
public:
    void add_decl(decl* d) { m_decls.insert(d); }
    void reset_decls() { m_decls.reset(); }
    // A member of the set.
    bool depends(ast* a) { return depends_core(a); }
    // This declaration alone; the set is it afterwards.
    bool depends(ast* a, decl* d);

    void accept(ast* a) override;
    using for_each_visitor::visit;
    void visit(name_expr* n) override;

protected:
    bool depends_core(ast* a);
    bool is_member(decl* d) const { return m_decls.contains(d); }
    void found() { m_found = true; }

private:
    hash_set<decl*, fast_ptr_hash<decl>> m_decls; // what is looked for
    bool m_found = false;                         // the run is over
};

// One declaration, a type as well as a variable or constant.
class simple_depends_on_visitor : public depends_on_visitor {
public:
    using depends_on_visitor::visit;
    void visit(type_name* n) override;
};

} // namespace vexor
