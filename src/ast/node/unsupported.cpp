#include "ast/node/unsupported.h"

#include "ast/visit/for_each_visitor.h"
#include "base/deep_stack.h"
#include "base/exceptions.h"

#include <algorithm>
#include <sstream>

namespace vexor {

namespace {

// The number of nodes that printing a term without sharing would meet, up to a limit.
class printed_size_visitor : public for_each_visitor {
public:
    static constexpr unsigned limit = 10000;

    unsigned measure(ast* a) {
        on_deep_stack([&] { accept(a); });
        return m_size;
    }
    void accept(ast* a) override {
        if (a == nullptr || m_size >= limit) return;
        check_depth();
        unsigned outer = m_size;
        if (unsigned const* known = m_known.find(a)) {
            m_size = *known;
        } else {
            m_size = 1;
            a->accept(this);
            m_known.insert(a, m_size);
        }
        m_size = std::min(limit, outer + m_size);
    }

private:
    hash_map<ast*, unsigned, fast_ptr_hash<ast>> m_known; // sizes so far
    unsigned m_size = 0;                                  // of what was met so far below the current node
};

} // namespace

void throw_not_implemented(char const* text, ast const* n) {
    std::ostringstream printed;
    // A term that shares much is printed with its sharing: as a tree it may be larger than memory.
    if (printed_size_visitor().measure(const_cast<ast*>(n)) < printed_size_visitor::limit)
        n->display(printed);
    else
        n->display_as_dag(printed, false);
    throw feature_not_implemented_exception(text, n->get_position(), printed.str());
}

} // namespace vexor
