// Conflict limits of the runs.
#include "search/restart_schedule.h"

#include <gtest/gtest.h>

namespace {

using namespace vexor;

TEST(restart_schedule, grows_by_a_half_and_truncates) {
    restart_schedule s(100, 33, 50);
    unsigned const expected[] = {150, 225, 337, 505, 757};
    unsigned const clauses[] = {36, 39, 42, 46, 50};
    for (unsigned i = 0; i < 5; ++i) {
        s.next(50, 33);
        EXPECT_EQ(s.conflict_limit(), expected[i]);
        EXPECT_EQ(s.clause_limit(), clauses[i]);
    }
}

TEST(restart_schedule, begins_anew_when_the_problem_grew_by_a_tenth) {
    restart_schedule s(100, 33, 100);
    s.next(109, 40); // not yet a tenth
    EXPECT_EQ(s.conflict_limit(), 150u);
    s.next(119, 40); // not a tenth of 109
    EXPECT_EQ(s.conflict_limit(), 225u);
    s.next(131, 40);
    EXPECT_EQ(s.conflict_limit(), 100u);
    EXPECT_EQ(s.clause_limit(), 40u);
    s.next(131, 40);
    EXPECT_EQ(s.conflict_limit(), 150u);
}

TEST(restart_schedule, zero_stays_zero_and_the_largest_stays_the_largest) {
    restart_schedule s(0, 0, 10);
    s.next(10, 0);
    EXPECT_EQ(s.conflict_limit(), 0u);
    restart_schedule t(4294967290u, 4294967295u, 10);
    t.next(10, 0);
    EXPECT_EQ(t.conflict_limit(), 4294967295u);
    EXPECT_EQ(t.clause_limit(), 4294967295u);
}

} // namespace
