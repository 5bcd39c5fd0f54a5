#include "search/def_table.h"

#include <cstdint>

namespace vexor {

unsigned decl_hash(var_decl const* decl) {
    std::uintptr_t const word = reinterpret_cast<std::uintptr_t>(decl);
    return static_cast<unsigned>(word >> 4);
}

} // namespace vexor
