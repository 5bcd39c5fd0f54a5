#include "search/theory_hub.h"

#include "base/debug.h"

namespace vexor {

// Without a congruence closure no variable has an equation, so these are never reached.
void theory_hub::init_equation(int, equation*, bool) { VEXOR_UNREACHABLE(); }
void theory_hub::remove_equation(equation*) { VEXOR_UNREACHABLE(); }
void theory_hub::assigned_event(equation*, bool) { VEXOR_UNREACHABLE(); }
bool theory_hub::decide_eq(equation*, bool&) { VEXOR_UNREACHABLE(); }
bool theory_hub::check_eq(equation*, bool) { VEXOR_UNREACHABLE(); }

// Without theories Booleans are all that a model has.
expr* theory_hub::get_value_for(model const&, var_decl*) { return nullptr; }

} // namespace vexor
