#include "search/frozen_reason.h"

#include <vector>

namespace vexor {

namespace {

// Made at first use: kinds are static objects of many source files.
std::vector<reason_kind const*>& all_kinds() {
    static std::vector<reason_kind const*> kinds;
    return kinds;
}

} // namespace

reason_kind::reason_kind(char const* name)
    : m_name(name)
    , m_index(static_cast<unsigned>(all_kinds().size())) {
    all_kinds().push_back(this);
}

unsigned reason_kind::num_kinds() { return static_cast<unsigned>(all_kinds().size()); }

reason_kind const& reason_kind::get(unsigned index) { return *all_kinds()[index]; }

frozen_reason::frozen_reason(reason_kind const& kind, literal const* lits, unsigned n)
    : m_kind(&kind)
    , m_num_lits(n) {
    auto* out = reinterpret_cast<literal*>(this + 1);
    for (unsigned i = 0; i < n; ++i) out[i] = lits[i];
}

void frozen_reason::get_antecedents(literal, svector<literal>& out) noexcept {
    for (literal l : *this) out.push_back(l);
}

char const* frozen_reason::get_name(literal) const noexcept { return m_kind->name(); }

} // namespace vexor
