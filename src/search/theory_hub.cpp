#include "search/theory_hub.h"

#include "base/debug.h"

namespace vexor {

// Without theories no variable has an atom, so these are never reached.
void theory_hub::init_atom(theory_atom*, bool) noexcept { VEXOR_UNREACHABLE(); }
unsigned theory_hub::assigned(literal const*, unsigned) noexcept { VEXOR_UNREACHABLE(); }
bool theory_hub::decide_atom(theory_atom*, bool&) noexcept { VEXOR_UNREACHABLE(); }
void theory_hub::display_atom(theory_atom const*, std::ostream&) const {}

// Without theories Booleans are all that a model has.
expr* theory_hub::get_value_for(model const&, var_decl*) noexcept { return nullptr; }

void theory_hub::display_statistics(std::ostream&, char const*) const {}

} // namespace vexor
