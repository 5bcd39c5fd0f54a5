// Reasons whose literals are listed when the fact is derived.
#pragma once

#include "base/vector.h"
#include "search/explanation.h"

#include <cstdint>

namespace vexor {

class theory_port;

// What a reason is called, in traces and in the statistics. Each component defines its own as static objects
// of a source file; the number counts them up over the process.
class reason_kind {
public:
    explicit reason_kind(char const* name);
    reason_kind(reason_kind const&) = delete; // told apart by address
    reason_kind& operator=(reason_kind const&) = delete;

    [[nodiscard]] char const* name() const { return m_name; }
    // From 0 upward, dense.
    [[nodiscard]] unsigned index() const { return m_index; }
    [[nodiscard]] static unsigned num_kinds();
    // The kind with the number, in order of definition.
    [[nodiscard]] static reason_kind const& get(unsigned index);

private:
    friend class theory_port;

    char const* m_name;
    unsigned m_index;
};

// Lives in the arena of the scope in which the fact was derived, the literals behind it; its destructor never
// runs. It holds literals alone, never a clause: the clause memory is compacted without looking at reasons.
class frozen_reason final : public explanation {
public:
    void get_antecedents(literal l, svector<literal>& out) noexcept override;
    [[nodiscard]] char const* get_name(literal l) const noexcept override;
    [[nodiscard]] unsigned size() const { return m_num_lits; }
    [[nodiscard]] literal const* begin() const { return reinterpret_cast<literal const*>(this + 1); }
    [[nodiscard]] literal const* end() const { return begin() + m_num_lits; }

private:
    friend class theory_port;

    frozen_reason(reason_kind const& kind, literal const* lits, unsigned n);

    reason_kind const* m_kind; // whose name it has
    unsigned m_num_lits;       // antecedents, true literals; they stand behind the object
};

} // namespace vexor
