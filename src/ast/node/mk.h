// mk<T>(arguments...): makes a node of class T, with one reference for the caller.
//
// The arguments are those of T's constructor; where it takes a plain pointer a shared_ptr may be given. The
// node goes into the store of the manager that the arguments belong to. A class that carries a child_array
// tells by num_slots how many children its arguments bring, so that node and children share one cell.
#pragma once

#include "ast/node/ast.h"

#include <type_traits>
#include <utility>

namespace vexor {

// Memory for a node, for mk alone.
void* allocate_node(ast_manager* manager, std::size_t bytes);

namespace mk_detail {

template <class A>
decltype(auto) raw(A&& a) {
    if constexpr (requires { a.get(); })
        return a.get();
    else
        return std::forward<A>(a);
}

// The manager that one argument leads to, null for none.
template <class A>
ast_manager* manager_in(A const& a) {
    if constexpr (std::is_convertible_v<A, ast_manager*> && !std::is_null_pointer_v<A>)
        return a;
    else if constexpr (std::is_convertible_v<A, ast const*> && !std::is_null_pointer_v<A>) {
        ast const* n = a;
        return n == nullptr ? nullptr : n->get_manager();
    } else if constexpr (requires { a.first->get_manager(); })
        return a.first->get_manager();
    else
        return nullptr;
}

template <class... A>
ast_manager* manager_of(A const&... args) {
    ast_manager* result = nullptr;
    static_cast<void>((((result = manager_in(args)) != nullptr) || ...));
    return result;
}

template <class T, class... A>
shared_ptr<T> make(A&&... args) {
    ast_manager* manager = manager_of(args...);
    std::size_t bytes = sizeof(T);
    if constexpr (requires { T::num_slots(args...); })
        bytes += node_store::inline_slots(sizeof(T), T::num_slots(args...)) * sizeof(void*);
    void* cell = allocate_node(manager, bytes);
    return shared_ptr<T>(new (cell) T(std::forward<A>(args)...));
}

} // namespace mk_detail

template <class T, class... A>
shared_ptr<T> mk(A&&... args) {
    return mk_detail::make<T>(mk_detail::raw(std::forward<A>(args))...);
}

} // namespace vexor
