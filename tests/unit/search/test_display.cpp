// Printed forms and names of reasons.
#include "search/context.h"

#include "support/context_probe.h"
#include "support/search_helpers.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace vexor;
using namespace vexor_test;

TEST(display, literals_and_clauses) {
    context ctx;
    std::vector<literal> const x = fresh(ctx, 3);
    auto text = [&](literal l) {
        std::ostringstream out;
        ctx.display(out, l);
        return out.str();
    };
    EXPECT_EQ(text(true_literal), "true");
    EXPECT_EQ(text(false_literal), "false");
    EXPECT_EQ(text(x[0]), "p!3");
    EXPECT_EQ(text(~x[1]), "(not p!4)");
    std::ostringstream out;
    out << x[2] << " " << ~x[2];
    EXPECT_EQ(out.str(), "p5 (not p5)");
    clause_ref const ref = add(ctx, {x[2], ~x[0], x[1]});
    std::ostringstream clause_text;
    ctx.display(clause_text, ctx.get_clause(ref));
    EXPECT_EQ(clause_text.str(), "(clause (not p!3) p!4 p!5)");
}

TEST(display, names_of_reasons_by_the_level_of_the_literal) {
    context ctx;
    context_probe probe(ctx);
    std::vector<literal> const x = fresh(ctx, 8);
    add(ctx, {~x[3], ~x[2], x[4]});
    add(ctx, {~x[3], x[5]});
    ctx.push();
    ctx.assert_literal(x[0]);
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.decide(x[2]); // in the place of an assumption
    ASSERT_TRUE(ctx.propagate_constraints());
    probe.search_lvl() = ctx.scope_lvl();
    probe.decide(x[3]);
    ASSERT_TRUE(ctx.propagate_constraints());
    auto name = [&](literal l) { return std::string(ctx.get_name(ctx.antecedent(l.var()), l)); };
    EXPECT_EQ(name(x[0]), "asserted");
    EXPECT_EQ(name(x[2]), "assumption");
    EXPECT_EQ(name(x[3]), "decided");
    EXPECT_EQ(name(x[4]), "clause:unit");
    EXPECT_EQ(name(x[5]), "clause:unit");
    ASSERT_EQ(ctx.antecedent(x[4].var()).tag(), gexplanation::clausal);
    EXPECT_STREQ(ctx.get_name(ctx.antecedent(x[4].var()), false_literal), "clause:empty");
    EXPECT_EQ(ctx.get_name(null_explanation, x[0]), nullptr);
}

} // namespace
