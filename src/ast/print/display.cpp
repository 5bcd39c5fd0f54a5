// Nodes and managers on streams.
#include "ast/node/ast_manager.h"
#include "ast/print/pp_dag_visitor.h"

#include <ostream>

namespace vexor {

void ast::display(std::ostream& out) const { pp_visitor()(this)->display(out, 0, term_layout_config()); }

void ast::display_as_dag(std::ostream& out, bool definitions_first) const {
    pp_dag_visitor()(this, definitions_first)->display(out, 0, term_layout_config());
}

std::ostream& operator<<(std::ostream& out, ast const& node) {
    node.display(out);
    return out;
}

void ast_manager::display(std::ostream& out) const {
    for (decl* d : get_decls()) out << *d << '\n';
}

void ast_manager::display_as_dag(std::ostream& out) const {
    for (decl* d : get_decls()) {
        d->display_as_dag(out, false);
        out << '\n';
    }
}

std::ostream& operator<<(std::ostream& out, ast_manager const& m) {
    m.display(out);
    return out;
}

} // namespace vexor
