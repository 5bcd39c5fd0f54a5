#include "search/explanation.h"

#include "search/context.h"

namespace vexor {

char const* explanation::get_name(literal) const noexcept { return nullptr; }

// The conflict is: the antecedents of the complement of the holder, and the holder.
void absurd_explanation::get_antecedents(literal l, svector<literal>& out) noexcept {
    VEXOR_ASSERT(l == false_literal);
    static_cast<void>(l);
    m_context.append_antecedents(~m_literal, m_reason, out);
    out.push_back(m_literal);
}

char const* absurd_explanation::get_name(literal) const noexcept { return "contradiction:A_and_NOT_A"; }

void false_explanation::get_antecedents(literal, svector<literal>&) noexcept {}

} // namespace vexor
