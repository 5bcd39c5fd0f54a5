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

    // Appends the true literals that together imply l; for false_literal, those of the conflict itself.
    // from_analysis is true when conflict analysis asks, which walks the trail backwards.
    virtual void get_antecedents(context* ctx, literal l, svector<literal>& out, bool from_analysis) = 0;
    [[nodiscard]] virtual unsigned get_num_antecedents(context* ctx, literal l);
    [[nodiscard]] virtual bool can_refine(context* ctx, literal l);
    // A short name of the reason for traces; may be null.
    [[nodiscard]] virtual char const* get_name(context* ctx, literal l) const;
    virtual void display(context* ctx, literal l, std::ostream& out);
    virtual void display_extra_lhs(context* ctx, literal l, std::ostream& out);
};

// A propagator other than a clause, attached to watch sets.
class constraint : public explanation {
public:
    // Literal l became true. Returns true to keep this watch entry; a conflict is reported through the
    // context.
    virtual bool propagate(context* ctx, literal l) = 0;
    // Detaches the constraint from the watch sets; with all, the watch sets are going away as a whole. The
    // context destroys the object.
    virtual void remove(context* ctx, bool all) = 0;
    // Called when the constraint enters (is_new) and after backtracking below the scope that it was recorded
    // in. Returns true if it must be looked at again after the next backjump.
    virtual bool init(context* ctx, bool is_new) = 0;
    virtual void display(context const* ctx, std::ostream& out) const = 0;
    using explanation::display;
    [[nodiscard]] virtual char const* get_kind() const = 0;
    [[nodiscard]] virtual bool is_satisfied(context* ctx) = 0;
    [[nodiscard]] virtual bool check_invariant(context* ctx) = 0;
};

// The theory side of a Boolean variable.
class atom {
public:
    virtual ~atom() = default;
    // The variable was created, or (is_new false) it survived a backjump below its creation.
    virtual void init(context* ctx, int var, bool is_new);
    virtual void assigned_event(context* ctx, bool polarity) = 0;
    virtual void remove(context* ctx);
    // Returns true if the theory fixes the phase of the decision.
    virtual bool decide(context* ctx, bool& phase) = 0;
    virtual void display(context const* ctx, std::ostream& out) const = 0;
};

// A literal was assigned although its complement holds.
class absurd_explanation : public explanation {
public:
    // Holder is the true literal; reason would explain its complement.
    absurd_explanation(literal holder, gexplanation reason)
        : m_literal(holder)
        , m_reason(reason) {}
    void get_antecedents(context* ctx, literal l, svector<literal>& out, bool from_analysis) override;
    [[nodiscard]] char const* get_name(context* ctx, literal l) const override;
    // The clause behind the reason, for the clause store's moves.
    [[nodiscard]] gexplanation& reason() { return m_reason; }

private:
    literal m_literal;
    gexplanation m_reason;
};

// The assertion of false: a conflict without antecedents.
class false_explanation : public explanation {
public:
    void get_antecedents(context* ctx, literal l, svector<literal>& out, bool from_analysis) override;
};

} // namespace vexor
