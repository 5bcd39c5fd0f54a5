// The interfaces by which theories and constraints take part in the search.
#pragma once

#include "base/vector.h"
#include "search/gexplanation.h"
#include "search/literal.h"

#include <iosfwd>

namespace vexor {

class context;

// A lazily expanded reason. Objects live in the context's arena and their destructors do not run, or are
// constraints, which the context owns.
class explanation {
public:
    virtual ~explanation() = default;

    // Appends the true literals that together imply l, all assigned before it; for false_literal, those of the
    // conflict itself. Conflict analysis asks, which walks the trail backwards; it may ask more than once. If
    // assigning l was the conflict, l is false: then what is true now implies l.
    virtual void get_antecedents(literal l, svector<literal>& out) noexcept = 0;
    // A short name of the reason for traces; may be null.
    [[nodiscard]] virtual char const* get_name(literal l) const noexcept;
};

// A propagator other than a clause, attached to watch sets.
class constraint : public explanation {
public:
    // Literal l became true. Returns true to keep this watch entry; a conflict is reported through the
    // context.
    virtual bool propagate(context* ctx, literal l) noexcept = 0;
    // Detaches the constraint from the watch sets; with all, the watch sets are going away as a whole. The
    // context destroys the object.
    virtual void remove(context* ctx, bool all) noexcept = 0;
    // Called when the constraint enters (is_new) and after backtracking below the scope that it was recorded
    // in. Returns true if it must be looked at again after the next backjump.
    virtual bool init(context* ctx, bool is_new) noexcept = 0;
    virtual void display(context const* ctx, std::ostream& out) const = 0;
    [[nodiscard]] virtual char const* get_kind() const = 0;
    [[nodiscard]] virtual bool is_satisfied(context* ctx) = 0;
    [[nodiscard]] virtual bool check_invariant(context* ctx) = 0;
};

// A literal was assigned although its complement holds.
class absurd_explanation : public explanation {
public:
    // Holder is the true literal; reason would explain its complement.
    absurd_explanation(context& ctx, literal holder, gexplanation reason)
        : m_context(ctx)
        , m_literal(holder)
        , m_reason(reason) {}
    void get_antecedents(literal l, svector<literal>& out) noexcept override;
    [[nodiscard]] char const* get_name(literal l) const noexcept override;

private:
    context& m_context;
    literal m_literal;
    gexplanation m_reason;
};

// The assertion of false: a conflict without antecedents.
class false_explanation : public explanation {
public:
    void get_antecedents(literal l, svector<literal>& out) noexcept override;
};

} // namespace vexor
