#include "search/trail_object.h"

namespace vexor {

namespace {
dummy_trail_object the_dummy;
}

trail_word const g_dummy_trail_object(&the_dummy);

} // namespace vexor
