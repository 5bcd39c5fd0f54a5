// The base of all nodes of the term language: declarations, expressions, types and their small helpers.
//
// Nodes are reference counted and mutable and belong to one manager, which numbers them. They are not
// hash-consed: structurally equal nodes are distinct objects, and equality is a visitor. A node is made by
// mk<T>, which puts it into its manager's node store; everything on nodes that is not a field access is a
// visitor.
#pragma once

#include "ast/node/ast_fwd.h"
#include "ast/node/node_store.h"
#include "base/position_tracker.h"
#include "base/shared_ptr.h"
#include "base/ustring.h"

#include <cstddef>
#include <iosfwd>

namespace vexor {

// What the manager knows about free local variables below a node.
enum class free_vars_state : unsigned { unknown = 0, none = 1, some = 2 };

// The overrides that every node class has. Classes are told apart by the address of m_cls_name.
#define VEXOR_AST_CLASS(TEXT)                                                                                \
public:                                                                                                      \
    static constexpr char m_cls_name[] = TEXT;                                                               \
    char const* get_cls_name() const override { return m_cls_name; }                                         \
    void accept(ast_visitor* v) override

class ast : public core_shared_obj<shared_obj_base> {
public:
    static constexpr char m_cls_name[] = "ast";
    static constexpr unsigned hash_bits = 30;
    static constexpr unsigned hash_mask = (1U << hash_bits) - 1;

    ast(ast const&) = delete; // clone() copies a node
    ast& operator=(ast const&) = delete;
    ~ast() override = default;

    virtual bool is_expr() const { return false; }
    virtual bool is_decl() const { return false; }
    virtual bool is_type() const { return false; }
    // Forgets what is cached about the node. Every setter calls it; parents of a shared node are not told.
    virtual void reset_cache();
    // Calls the visit for the node's class.
    virtual void accept(ast_visitor* v) = 0;
    // The representative for type equality, and for type compatibility.
    virtual ast* eq_norm() { return this; }
    virtual ast* compatible_norm() { return this; }
    // Can the node have at most one parent?
    virtual bool is_fanout_one() const { return get_ref_count() < 2; }
    virtual char const* get_cls_name() const = 0;

    ast_manager* get_manager() const { return node_store::manager_of(this); }
    // Serial number in the order of creation; clones take a new one.
    unsigned get_id() const { return m_id; }
    // Position in the tracker's running count, -1 for generated nodes.
    int get_pos() const { return m_pos; }
    position_tracker::position get_position() const;

    // Structural hash, the same for alpha-equivalent nodes; never 0.
    unsigned hash();
    // Alpha-equivalence.
    bool equals(ast* other);
    // Does a local variable occur whose binder is not below the node?
    bool has_free_vars();

    void display(std::ostream& out) const;
    void display_as_dag(std::ostream& out, bool definitions_first) const;

    // Caches of the visitors hash_visitor and free_vars_visitor; a hash of 0 is not known.
    unsigned get_cached_hash() const { return m_hash; }
    void set_cached_hash(unsigned hash) { m_hash = hash & hash_mask; }
    free_vars_state get_free_vars_state() const { return static_cast<free_vars_state>(m_free_vars_state); }
    void set_free_vars_state(free_vars_state s) { m_free_vars_state = static_cast<unsigned>(s); }

    // Nodes stand in the store of their manager only: see mk.
    static void* operator new(std::size_t size) = delete;
    static void* operator new(std::size_t, void* cell) noexcept { return cell; }
    static void operator delete(void* node) { node_store::release(node); }
    static void operator delete(void* cell, void*) { node_store::release(cell); }

protected:
    explicit ast(int pos);

private:
    unsigned m_hash : hash_bits;    // cached structural hash, 0 is not known
    unsigned m_free_vars_state : 2; // a free_vars_state
    unsigned m_id;                  // see get_id
    int m_pos;                      // see get_pos
};

std::ostream& operator<<(std::ostream& out, ast const& node);

// A name with a position.
class identifier : public ast {
    VEXOR_AST_CLASS("identifier");

public:
    identifier(ast_manager* m, ustring const& name, int pos);
    explicit identifier(identifier const* other);
    identifier(identifier const* other, ustring const& name);
    // A generated name: "aux:" followed by the node's number.
    explicit identifier(type const* t);

    ustring const& get_name() const { return m_name; }
    void set_name(ustring const& name);
    bool is_aux() const;
    virtual shared_ptr<identifier> clone() const;

private:
    ustring m_name;
};

// Is the node of exactly class T?
template <class T>
bool is_a(ast const* n) {
    return n != nullptr && n->get_cls_name() == T::m_cls_name;
}

} // namespace vexor

#include "ast/node/mk.h"
