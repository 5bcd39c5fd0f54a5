// Prints nodes in the syntax of the native language: turns a node into a document.
//
// Names print as they are. A node that is shared has one document, so making the document of a term is linear
// in its nodes; printing is linear in the text.
#pragma once

#include "ast/node/nodes.h"
#include "ast/print/pp_doc.h"
#include "ast/visit/ast_visitor.h"
#include "base/hash_table.h"

#include <vector>

namespace vexor {

class pp_visitor : public ast_visitor {
public:
    shared_ptr<pp::doc> operator()(ast const* a);

    using ast_visitor::visit;
    void visit(ast* n) override;
    void visit(identifier* n) override;
    void visit(decl* n) override;
    void visit(var_decl* n) override;
    void visit(let_decl* n) override;
    void visit(const_decl* n) override;
    void visit(constructor_decl* n) override;
    void visit(type_decl* n) override;
    void visit(type_name* n) override;
    void visit(function_type* n) override;
    void visit(tuple_type* n) override;
    void visit(record_type* n) override;
    void visit(scalar_type* n) override;
    void visit(datatype* n) override;
    void visit(bitvector_type* n) override;
    void visit(subtype* n) override;
    void visit(subrange* n) override;
    void visit(record_entry* n) override;
    void visit(name_expr* n) override;
    void visit(application* n) override;
    void visit(lambda_expr* n) override { visit_binding("lambda", n); }
    void visit(forall_expr* n) override { visit_binding("forall", n); }
    void visit(exists_expr* n) override { visit_binding("exists", n); }
    void visit(fresh_vars_expr* n) override { visit_binding("fresh-vars", n); }
    void visit(let_expr* n) override;
    void visit(local_context_expr* n) override;
    void visit(function_update_expr* n) override;
    void visit(tuple_update_expr* n) override;
    void visit(record_update_expr* n) override;
    void visit(numeral_expr* n) override;
    void visit(bitvector_constant* n) override;
    void visit(tuple_literal* n) override;
    void visit(tuple_selection* n) override;
    void visit(record_literal* n) override;
    void visit(record_selection* n) override;
    void visit(typed_constant* n) override;
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY) void visit(X##_name_expr* n) override;
#include "ast/node/builtin_ops.def"

protected:
    using docs = std::vector<shared_ptr<pp::doc>>;

    // The document of a part.
    virtual shared_ptr<pp::doc> accept(ast* a);
    // The document of a part, made anew.
    shared_ptr<pp::doc> accept_core(ast* a);
    virtual void reset();
    // Do several places hold the node, and is it more than a name or a constant?
    static bool is_worth_sharing(ast* a);

    shared_ptr<pp::doc> m_result; // document of the node visited

private:
    template <class T>
    docs accept_all(child_array<T> const& children);
    // A parenthesized form: the head on the first line, and the rest indented when it takes several.
    void form(shared_ptr<pp::doc> const& head, docs const& rest);
    void form(char const* keyword, docs const& rest);
    void visit_binding(char const* keyword, binding_expr* n);
    bool is_accessor_of_own_argument(application* n) const;

    static constexpr int m_indent = 2; // indentation of the parts of a form

    hash_map<ast*, shared_ptr<pp::doc>, fast_ptr_hash<ast>> m_docs; // those of shared nodes
    hash_set<var_decl*, fast_ptr_hash<var_decl>> m_accessor_args; // parameters of accessors met, see datatype
};

// The layout for terms: the default one, with the indentation limited to a part of the line. Deep terms would
// otherwise print as much white space as the square of their depth.
pp::layout_config term_layout_config();

} // namespace vexor
