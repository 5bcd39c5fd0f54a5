// Constants and literals of the built-in and composite types.
#pragma once

#include "ast/node/child_array.h"
#include "ast/node/expr.h"
#include "base/numeral.h"

namespace vexor {

class numeral_expr : public expr {
    VEXOR_EXPR_CLASS("numeral_expr");

public:
    numeral_expr(ast_manager* m, numeral const& value, int pos);
    shared_ptr<numeral_expr> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    numeral const& get_value() const { return m_value; }
    // Drops the caches only if the value changes.
    void set_value(numeral const& value);

private:
    numeral m_value; // any rational
};

class bitvector_constant : public expr {
    VEXOR_EXPR_CLASS("bitvector_constant");

public:
    bitvector_constant(ast_manager* m, unsigned size, numeral const& value, int pos);
    shared_ptr<bitvector_constant> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned get_size() const { return m_size; }
    numeral const& get_value() const { return m_value; }
    void set_size(unsigned size);
    void set_value(numeral const& value);

private:
    unsigned m_size; // in bits
    numeral m_value; // unsigned value
};

class tuple_literal : public expr {
    VEXOR_EXPR_CLASS("tuple_literal");

public:
    // Raises empty_tuple_literal_exception for no components.
    tuple_literal(ast_manager* m, expr* const* exprs, unsigned n, int pos);
    shared_ptr<tuple_literal> clone() const;
    shared_ptr<tuple_literal> clone(expr* const* exprs, unsigned n) const;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned size() const { return m_exprs.size(); }
    expr* get_expr(unsigned i) const { return m_exprs[i]; }
    child_array<expr> const& get_exprs() const { return m_exprs; }
    void set_exprs(expr* const* exprs, unsigned n);

    static unsigned num_slots(ast_manager*, expr* const*, unsigned n, int) { return n; }

private:
    child_array<expr> m_exprs; // the components, at least one
};

class tuple_selection : public expr {
    VEXOR_EXPR_CLASS("tuple_selection");

public:
    tuple_selection(expr* tuple, unsigned idx, int pos);
    shared_ptr<tuple_selection> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    expr* get_tuple() const { return m_tuple.get(); }
    unsigned get_idx() const { return m_idx; }
    void set_tuple(expr* e);
    void set_idx(unsigned idx);

private:
    shared_ptr<expr> m_tuple; // selected from
    unsigned m_idx;           // place of the component, unchecked
};

// Entries are held sorted by name, whatever the order of the source.
class record_literal : public expr {
    VEXOR_EXPR_CLASS("record_literal");

public:
    // Raises empty_record_literal_exception for no entries.
    record_literal(ast_manager* m, record_entry* const* entries, unsigned n, int pos);
    shared_ptr<record_literal> clone() const;
    shared_ptr<record_literal> clone(record_entry* const* entries, unsigned n) const;
    shared_ptr<expr> clone_to_expr() const override;

    unsigned size() const { return m_entries.size(); }
    record_entry* get_entry(unsigned i) const { return m_entries[i]; }
    // The entry of that name, null for none.
    record_entry* find_entry(ustring const& name) const;
    child_array<record_entry> const& get_entries() const { return m_entries; }
    void set_entries(record_entry* const* entries, unsigned n);

    static unsigned num_slots(ast_manager*, record_entry* const*, unsigned n, int) { return n; }

private:
    child_array<record_entry> m_entries; // sorted by name, at least one
};

class record_selection : public expr {
    VEXOR_EXPR_CLASS("record_selection");

public:
    record_selection(expr* record, identifier* id, int pos);
    shared_ptr<record_selection> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    expr* get_record() const { return m_record.get(); }
    ustring const& get_name() const { return m_id_node->get_name(); }
    identifier* get_id_node() const { return m_id_node.get(); }
    void set_record(expr* e);
    void set_id(identifier* id);

private:
    shared_ptr<expr> m_record;        // selected from
    shared_ptr<identifier> m_id_node; // name of the field
};

// A value number of a declared type.
class typed_constant : public expr {
    VEXOR_EXPR_CLASS("typed_constant");

public:
    typed_constant(type_decl* d, int value, int pos);
    shared_ptr<typed_constant> clone() const;
    shared_ptr<expr> clone_to_expr() const override;

    type_decl* get_decl() const { return m_decl.get(); }
    int get_value() const { return m_value; }
    void set_decl(type_decl* d);
    void set_value(int value);

private:
    shared_ptr<type_decl> m_decl; // never null
    int m_value;                  // number of the value
};

// Sorts by name, in the order of the text.
void sort_entries(record_entry** entries, unsigned n);

} // namespace vexor
