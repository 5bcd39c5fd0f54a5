#include "ast_fixture.h"

#include "ast/visit/disjunction.h"
#include "support/random.h"

#include <functional>

namespace vexor_test {
namespace {

class disjunctions : public ast_test {
public:
    disjunctions() {
        for (char const* n : {"a", "b", "c", "d"}) atoms.push_back(name(constant(n, boolean())));
    }
    expr* a() { return atoms[0].get(); }
    expr* b() { return atoms[1].get(); }
    e_ptr negate(expr* e) { return app<not_decl>({e}); }
    e_ptr either(std::initializer_list<expr*> l) { return app<or_decl>(l); }

    std::vector<e_ptr> atoms;
    ptr_vector<expr> args;
    shared_ptr_vector<ast> keep;
};

TEST_F(disjunctions, create_or) {
    EXPECT_EQ(create_or(&m, args, keep).get(), m.mk_false());
    args.push_back(a());
    EXPECT_EQ(create_or(&m, args, keep).get(), a());
    args.push_back(m.mk_true());
    unsigned refs = a()->get_ref_count();
    EXPECT_EQ(create_or(&m, args, keep).get(), m.mk_true());
    EXPECT_TRUE(keep.contains(a()));
    EXPECT_EQ(a()->get_ref_count(), refs + 1);
    EXPECT_TRUE(args.empty());
    args.push_back(a());
    args.push_back(m.mk_false());
    args.push_back(b());
    e_ptr r = create_or(&m, args, keep);
    ASSERT_TRUE(is_app_of<or_name_expr>(r.get()));
    EXPECT_EQ(to_app(r.get())->get_fun(), m.mk_name<or_decl>());
    EXPECT_EQ(to_app(r.get())->num_args(), 2U);
    EXPECT_EQ(to_app(r.get())->get_arg(1), b());
    EXPECT_EQ(r->get_pos(), -1);
}

TEST_F(disjunctions, duplicates_go) {
    insert_disjunct(args, a(), keep);
    insert_disjunct(args, m.mk_false(), keep);
    insert_disjunct(args, atoms[0]->clone_to_expr().get(), keep);
    e_ptr both = either({b(), a(), m.mk_false()});
    insert_disjunct(args, both.get(), keep);
    ASSERT_EQ(args.size(), 2U);
    EXPECT_EQ(args[0], a());
    EXPECT_EQ(args[1], b());
}

TEST_F(disjunctions, complements_make_it_true) {
    e_ptr na = negate(a());
    e_ptr nna = negate(na.get());
    insert_disjunct(args, na.get(), keep);
    insert_disjunct(args, b(), keep);
    insert_disjunct(args, nna.get(), keep);
    ASSERT_EQ(args.size(), 1U);
    EXPECT_EQ(args[0], m.mk_true());
    EXPECT_TRUE(keep.contains(b()));
    insert_disjunct(args, atoms[2].get(), keep);
    EXPECT_EQ(args.size(), 1U) << "true for good";
}

TEST_F(disjunctions, true_wins) {
    insert_disjunct(args, a(), keep);
    insert_disjunct(args, m.mk_true(), keep);
    ASSERT_EQ(args.size(), 1U);
    EXPECT_EQ(args[0], m.mk_true());
    e_ptr or_true = either({b(), m.mk_true()});
    disjunction d;
    d.insert(or_true.get());
    EXPECT_TRUE(d.is_true());
    EXPECT_EQ(d.to_expr(&m).get(), m.mk_true());
    e_ptr not_false = negate(m.mk_false());
    d.reset();
    d.insert(not_false.get());
    EXPECT_TRUE(d.is_true());
    d.reset();
    EXPECT_EQ(d.to_expr(&m).get(), m.mk_false());
    d.insert(a());
    EXPECT_EQ(d.to_expr(&m).get(), a());
}

TEST_F(disjunctions, deep_and_shared_disjunctions) {
    e_ptr shared = either({a(), b()});
    for (int i = 0; i < 60; ++i) shared = either({shared.get(), shared.get()});
    insert_disjunct(args, shared.get(), keep);
    EXPECT_EQ(args.size(), 2U);
    e_ptr deep = b();
    for (int i = 0; i < 100000; ++i) deep = either({a(), deep.get()});
    disjunction d;
    d.insert(deep.get());
    EXPECT_EQ(d.get_disjuncts().size(), 2U);
}

// Truth tables: what insert_disjunct and create_or make has the value of the plain disjunction.
TEST_F(disjunctions, random_against_truth_tables) {
    std::function<bool(expr*, unsigned)> value = [&](expr* e, unsigned row) -> bool {
        for (unsigned i = 0; i < atoms.size(); ++i)
            if (e->equals(atoms[i].get())) return (row >> i & 1) != 0;
        if (is_true(e)) return true;
        if (is_false(e)) return false;
        bool result = false;
        for (expr* arg : to_app(e)->get_args()) result = result || value(arg, row);
        return is_app_of<not_name_expr>(e) ? !result : result;
    };
    for (unsigned round = 0; round < rounds(400); ++round) {
        std::uint64_t seed = first_seed(31) + round;
        SCOPED_TRACE(seed);
        random_stream random(seed);
        std::vector<e_ptr> pool = atoms;
        pool.push_back(m.mk_false());
        if (random.chance(10)) pool.push_back(m.mk_true());
        auto pick = [&] { return pool[random.below(static_cast<unsigned>(pool.size()))].get(); };
        for (int i = 0; i < 6; ++i)
            pool.push_back(random.chance(50) ? negate(pick()) : either({pick(), pick(), pick()}));
        ptr_vector<expr> list;
        std::vector<expr*> inserted;
        disjunction d;
        for (unsigned i = random.below(5); i > 0; --i) {
            inserted.push_back(pick());
            insert_disjunct(list, inserted.back(), keep);
            d.insert(inserted.back());
        }
        e_ptr r = create_or(&m, list, keep);
        e_ptr s = d.to_expr(&m);
        EXPECT_TRUE(r->equals(s.get()));
        for (unsigned row = 0; row < 16; ++row) {
            bool expected = false;
            for (expr* e : inserted) expected = expected || value(e, row);
            ASSERT_EQ(value(r.get(), row), expected);
        }
    }
}

} // namespace
} // namespace vexor_test
