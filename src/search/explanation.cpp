#include "search/explanation.h"

#include "search/context.h"

#include <ostream>

namespace vexor {

unsigned explanation::get_num_antecedents(context*, literal) { return 0; }
bool explanation::can_refine(context*, literal) { return false; }
char const* explanation::get_name(context*, literal) const { return nullptr; }
void explanation::display(context* ctx, literal l, std::ostream& out) {
    svector<literal> antecedents;
    get_antecedents(ctx, l, antecedents, true);
    for (literal a : antecedents) {
        ctx->display(out, a);
        out << " ";
    }
}
void explanation::display_extra_lhs(context*, literal, std::ostream&) {}

void atom::init(context*, int, bool) {}
void atom::remove(context*) {}

// The conflict is: the antecedents of the complement of the holder, and the holder.
void absurd_explanation::get_antecedents(context* ctx, literal l, svector<literal>& out, bool) {
    VEXOR_ASSERT(l == false_literal);
    static_cast<void>(l);
    ctx->append_antecedents(~m_literal, m_reason, out);
    out.push_back(m_literal);
}

char const* absurd_explanation::get_name(context*, literal) const { return "contradiction:A_and_NOT_A"; }

void false_explanation::get_antecedents(context*, literal, svector<literal>&, bool) {}

} // namespace vexor
