// Children that are held sorted by name, in the order of the text: fields and entries of records.
#pragma once

#include "ast/node/child_array.h"
#include "base/ustring.h"

#include <algorithm>
#include <vector>

namespace vexor {

// Stable: of two children of one name the later one stays later.
template <class T>
void sort_by_name(T** children, unsigned n) {
    std::stable_sort(children, children + n, [](T* a, T* b) { return a->get_name().less(b->get_name()); });
}

template <class T>
std::vector<T*> sorted_by_name(T* const* children, unsigned n) {
    std::vector<T*> result(children, children + n);
    sort_by_name(result.data(), n);
    return result;
}

// The first child of that name, null for none.
template <class T>
T* find_by_name(child_array<T> const& children, ustring const& name) {
    auto less = [](T* child, ustring const& wanted) { return child->get_name().less(wanted); };
    auto* found = std::lower_bound(children.begin(), children.end(), name, less);
    return found != children.end() && (*found)->get_name() == name ? *found : nullptr;
}

} // namespace vexor
