// What a Boolean variable stands for: one tagged word.
#pragma once

#include "base/debug.h"
#include "base/vector.h"
#include "search/literal.h"

#include <cstdint>
#include <iosfwd>

namespace vexor {

class theory_atom;
class var_decl;

enum class gate_kind : unsigned { none = 0, or_gate = 7, ite_gate = 8, iff_gate = 9 };

// The definition of a gate variable.
struct aux_bool_var_def {
    gate_kind m_kind = gate_kind::none;
    svector<literal> m_args;
};

// Prints "(or a b)", with the literals' own printed form.
std::ostream& operator<<(std::ostream& out, aux_bool_var_def const& def);

// The two low bits tell the kind; an atom pointer of null is null_body, a variable without definition.
class bool_var_body {
public:
    enum kind : unsigned { theory_body = 0, decl_body = 2, aux_body = 3 };

    constexpr bool_var_body()
        : m_word(0) {}
    explicit bool_var_body(theory_atom* a)
        : m_word(reinterpret_cast<std::uintptr_t>(a) | theory_body) {}
    explicit bool_var_body(var_decl* d)
        : m_word(reinterpret_cast<std::uintptr_t>(d) | decl_body) {}
    explicit bool_var_body(aux_bool_var_def* d)
        : m_word(reinterpret_cast<std::uintptr_t>(d) | aux_body) {}

    [[nodiscard]] kind tag() const { return static_cast<kind>(m_word & 3); }
    [[nodiscard]] bool is_null() const { return m_word == 0; }
    // Only variables with theory content are handed to the theories when they are assigned.
    [[nodiscard]] bool has_atom() const { return tag() == theory_body && !is_null(); }

    [[nodiscard]] theory_atom* get_atom() const { return get<theory_atom>(theory_body); }
    [[nodiscard]] var_decl* get_decl() const { return get<var_decl>(decl_body); }
    [[nodiscard]] aux_bool_var_def* get_def() const { return get<aux_bool_var_def>(aux_body); }

    friend bool operator==(bool_var_body a, bool_var_body b) { return a.m_word == b.m_word; }

private:
    template <typename T>
    T* get(kind expected) const {
        VEXOR_ASSERT(tag() == expected);
        static_cast<void>(expected);
        return reinterpret_cast<T*>(m_word & ~std::uintptr_t(3));
    }

    std::uintptr_t m_word;
};

inline constexpr bool_var_body null_body{};

} // namespace vexor
