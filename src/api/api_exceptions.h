// What the full interface itself refuses.
#pragma once

#include "base/exceptions.h"

namespace vexor {

class invalid_weight_exception : public vexor_exception {
public:
    char const* what() const noexcept override { return "The weight must be greater than zero."; }
};

class invalid_bitvector_size_exception : public vexor_exception {
public:
    char const* what() const noexcept override {
        return "Invalid bitvector size. A bitvector has 1 to 16777216 bits.";
    }
};

} // namespace vexor
