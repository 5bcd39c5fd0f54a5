// A visitor for one operation on a node, with the tables of earlier operations.
//
// Tables are worth keeping between runs, but a visitor that is asked again inside of its own run would be
// corrupted. So the free visitors of a class stand in a list: a nested operation takes another one.
#pragma once

#include <memory>
#include <vector>

namespace vexor {

template <class V>
class borrowed_visitor {
public:
    borrowed_visitor() {
        auto& list = free_list();
        if (list.empty()) {
            m_visitor = std::make_unique<V>();
        } else {
            m_visitor = std::move(list.back());
            list.pop_back();
        }
    }
    borrowed_visitor(borrowed_visitor const&) = delete; // there is one borrower
    borrowed_visitor& operator=(borrowed_visitor const&) = delete;
    ~borrowed_visitor() {
        m_visitor->reset();
        free_list().push_back(std::move(m_visitor));
    }

    V& operator*() const { return *m_visitor; }
    V* operator->() const { return m_visitor.get(); }

private:
    // Made on first use and never destroyed: static objects may still compare nodes while the process ends.
    static std::vector<std::unique_ptr<V>>& free_list() {
        static auto* list = new std::vector<std::unique_ptr<V>>;
        return *list;
    }

    std::unique_ptr<V> m_visitor; // in use here
};

} // namespace vexor
