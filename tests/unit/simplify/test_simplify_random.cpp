// Random closed terms with every construct agree with their images, under random values of the constants.
#include "random_terms.h"
#include "simplify_fixture.h"

namespace vexor {
namespace {

using vexor_test::random_stream;
using vexor_test::random_terms;
using vexor_test::term_evaluator;
using vexor_test::to_text;

struct mixture {
    unsigned m_first_seed;
    unsigned m_rounds;
    unsigned m_depth;
    unsigned m_bv_percent;
    unsigned m_binder_percent;
};

class simplify_random : public testing::TestWithParam<mixture> {};

TEST_P(simplify_random, keeps_the_meaning) {
    mixture const& p = GetParam();
    std::uint64_t seed = vexor_test::first_seed(p.m_first_seed);
    for (unsigned round = 0; round < vexor_test::rounds(p.m_rounds); ++round, ++seed) {
        SCOPED_TRACE(seed);
        random_stream random(seed);
        ast_manager m;
        random_terms make(m);
        make.m_bv_percent = p.m_bv_percent;
        make.m_binder_percent = p.m_binder_percent;
        expr* e = make.boolean(random, p.m_depth);
        shared_ptr<expr> image = e, full = e;
        basic_simplify(image);
        simplify(full);
        shared_ptr<expr> twice = image;
        basic_simplify(twice);
        for (unsigned i = 0; i < 8; ++i) {
            term_evaluator eval;
            make.choose_constants(eval, random);
            bool expected = eval.is_true(e);
            ASSERT_EQ(eval.is_true(image.get()), expected) << to_text(e) << "\n" << to_text(image.get());
            ASSERT_EQ(eval.is_true(full.get()), expected) << to_text(e) << "\n" << to_text(full.get());
            ASSERT_EQ(eval.is_true(twice.get()), expected) << to_text(e) << "\n" << to_text(twice.get());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(quantifiers, simplify_random, testing::Values(mixture{5000, 300, 4, 0, 35}));
INSTANTIATE_TEST_SUITE_P(functions, simplify_random, testing::Values(mixture{6000, 80, 6, 0, 15}));
INSTANTIATE_TEST_SUITE_P(bit_vectors, simplify_random, testing::Values(mixture{7000, 300, 4, 90, 5}));
INSTANTIATE_TEST_SUITE_P(everything, simplify_random, testing::Values(mixture{8000, 100, 5, 40, 20}));

} // namespace
} // namespace vexor
