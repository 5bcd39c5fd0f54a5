// What the source files of the parser share.
#pragma once

#include "ast/node/ast_exceptions.h"
#include "frontend/parser.h"

namespace vexor {

// A scope of local names, closed on every way out.
class parser::scope {
public:
    explicit scope(parser& p)
        : m_table(p.m_scope_table) {
        m_table.begin_scope();
    }
    scope(scope const&) = delete; // one scope is closed once
    scope& operator=(scope const&) = delete;
    ~scope() { m_table.end_scope(); }

private:
    scoped_table<ustring, var_decl*, hash_ustring>& m_table; // the parser's
};

// The top of one of the parser's stacks of nodes: what one construct has read so far. Constructs nest, and
// all of them share a few stacks, so that a list costs no allocation of its own.
template <class T>
class parser::node_list {
public:
    explicit node_list(shared_ptr_vector<T>& stack)
        : m_stack(stack)
        , m_base(stack.size()) {}
    node_list(node_list const&) = delete; // the top of a stack has one owner
    node_list& operator=(node_list const&) = delete;
    ~node_list() { m_stack.shrink(m_base); }

    void push_back(T* node) { m_stack.push_back(node); }
    void pop_back() { m_stack.pop_back(); }
    [[nodiscard]] unsigned size() const { return m_stack.size() - m_base; }
    [[nodiscard]] T* operator[](unsigned i) const { return m_stack[m_base + i]; }
    [[nodiscard]] T* back() const { return m_stack.back(); }
    // Valid until the next push_back on the stack.
    [[nodiscard]] T* const* data() const { return m_stack.data() + m_base; }

private:
    shared_ptr_vector<T>& m_stack; // the parser's; this list is its end
    unsigned m_base;               // size of the stack before this list
};

} // namespace vexor
