#include "ast_fixture.h"

#include "ast/node/ast_exceptions.h"
#include "ast/visit/num_nodes_visitor.h"
#include "support/random.h"

#include <map>
#include <sstream>

namespace vexor_test {
namespace {

class manager : public ast_test {
public:
    // The type with the given constructors; each is its name and whether it takes a value of the type itself.
    shared_ptr<type_decl> declare_datatype(char const* name,
                                           std::vector<std::pair<std::string, bool>> const& constructors,
                                           char const* accessor_prefix = "get-") {
        shared_ptr<type_decl> d = mk<type_decl>(id(name), static_cast<type*>(nullptr), -1);
        shared_ptr<type_name> t = d->create_type_name(-1);
        shared_ptr_vector<constructor_decl> list;
        for (auto const& [c, recursive] : constructors) {
            shared_ptr<identifier> cid = id(c);
            shared_ptr<recognizer_decl> r = recognizer_decl::create_recognizer_decl(cid.get(), t.get(), -1);
            if (!recursive) {
                list.push_back(mk<constructor_decl>(cid, t, r, -1).get());
                continue;
            }
            shared_ptr<subtype> domain = m.create_subtype_for_pred(r.get(), -1);
            shared_ptr<accessor_decl> a = mk<accessor_decl>(
                id(accessor_prefix + c), function_type::construct_unary(domain.get(), t.get(), -1), -1);
            accessor_decl* accessors[1] = {a.get()};
            list.push_back(mk<constructor_decl>(cid, accessors, 1U, t, r, -1).get());
        }
        shared_ptr<datatype> definition = m.create_datatype(list.data(), list.size(), -1);
        d->set_definition(definition.get());
        m.add_global_type_decl(d.get());
        return d;
    }
    template <class F>
    std::string text_of(F f) {
        try {
            f();
        } catch (specification_exception const& e) {
            return e.what_core();
        }
        return "nothing";
    }
};

TEST_F(manager, the_predefined_world_has_its_order) {
    std::vector<std::string> names;
    for (decl* d : m.get_decls()) names.push_back(d->get_name().c_str());
    std::vector<std::string> expected = {"bool",
                                         "and",
                                         "or",
                                         "implies",
                                         "not",
                                         "number",
                                         "real_pred",
                                         "real",
                                         "int_pred",
                                         "int",
                                         "<",
                                         "<=",
                                         ">",
                                         ">=",
                                         "+",
                                         "-",
                                         "*",
                                         "/",
                                         "nat",
                                         "any",
                                         "=",
                                         "/=",
                                         "ite",
                                         "bv-add",
                                         "bv-sub",
                                         "bv-mul",
                                         "bv-neg",
                                         "bv-concat",
                                         "bv-extract",
                                         "bv-and",
                                         "bv-or",
                                         "bv-not",
                                         "bv-xor",
                                         "bv-lt",
                                         "bv-le",
                                         "bv-gt",
                                         "bv-ge",
                                         "sbv-lt",
                                         "sbv-le",
                                         "sbv-gt",
                                         "sbv-ge",
                                         "bv-sign-extend",
                                         "bv-rotate_left",
                                         "bv-rotate_right",
                                         "bv-repeat",
                                         "bv-shift-right0",
                                         "bv-shift-right1",
                                         "bv-shift-righta",
                                         "bv-shift-left0",
                                         "bv-shift-left1",
                                         "bv-udiv",
                                         "bv-urem",
                                         "bv-shl",
                                         "bv-lshr",
                                         "bv-nand",
                                         "bv-nor",
                                         "bv-xnor",
                                         "bv-redor",
                                         "bv-redand",
                                         "bv-comp",
                                         "bv-sdiv",
                                         "bv-srem",
                                         "bv-smod",
                                         "bv-ashr",
                                         "bv-zero-extend"};
    EXPECT_EQ(names, expected);
    unsigned last = 0;
    for (decl* d : m.get_decls()) {
        EXPECT_GE(d->get_id(), last);
        last = d->get_id();
        EXPECT_EQ(d->is_builtin(), d->get_name() != ustring("any"));
    }
    EXPECT_TRUE(m.is_global_name_expr(ustring("true")));
    EXPECT_EQ(m.get_true_decl()->get_index(), 1);
    EXPECT_EQ(m.get_false_decl()->get_index(), 0);
    EXPECT_EQ(m.get_true_decl()->get_scalar_type()->size(), 2U);
    EXPECT_EQ(static_cast<function_type*>(m.get_builtin<ite_decl>()->get_type())->get_arity(), 3U);
    EXPECT_EQ(m.num_type_names(), 6U);
    EXPECT_EQ(m.num_const_names(), 61U - 2U + 2U + 0U) << "61 rows of operators, true and false";
}

TEST_F(manager, the_types_of_numbers) {
    EXPECT_EQ(cast_type<number_type_name>(integer()), m.create_number_type());
    EXPECT_NE(cast_type<subtype>(m.create_real_type()), nullptr);
    auto* nat = cast_type<subtype>(m.create_nat_type());
    ASSERT_NE(nat, nullptr);
    EXPECT_EQ(nat->get_decl()->get_name(), ustring("idx"));
    EXPECT_EQ(nat->get_decl()->get_type(), integer());
    EXPECT_TRUE(is_app_of<ge_name_expr>(nat->get_pred()));
    EXPECT_EQ(m.create_bool_type(3), m.create_bool_type(4)) << "shared";
    EXPECT_EQ(m.mk_true(), m.mk_true());
    EXPECT_TRUE(is_true(m.mk_true()) && is_false(m.mk_false()));
}

TEST_F(manager, names_are_found_with_the_class_that_fits) {
    EXPECT_TRUE(is_a<and_name_expr>(m.create_global_name_expr(ustring("and"), -1).get()));
    EXPECT_TRUE(is_a<bv_minus_name_expr>(m.create_global_name_expr(ustring("bv-neg"), -1).get()));
    EXPECT_TRUE(is_a<true_name_expr>(m.create_global_name_expr(ustring("true"), -1).get()));
    EXPECT_TRUE(is_a<bool_type_name>(m.create_type_name(ustring("bool"), -1).get()));
    EXPECT_TRUE(m.is_global_name_expr(ustring("and")));
    EXPECT_FALSE(m.is_global_name_expr(ustring("bool")));
    EXPECT_TRUE(m.is_type_name(ustring("bool")));
    EXPECT_EQ(text_of([&] { m.get_global_var_decl(ustring("x"), 3); }), "Undefined name \"x\".");
    EXPECT_EQ(text_of([&] { m.create_global_name_expr(ustring("x"), 3); }), "Undefined name \"x\".");
    EXPECT_EQ(text_of([&] { m.create_type_name(ustring("t"), 3); }), "Undefined name \"t\".");
    EXPECT_EQ(text_of([&] { constant("and"); }), "Constant \"and\" was already defined.");
    EXPECT_EQ(text_of([&] { m.create_builtin_type_decl<type_decl>("int", nullptr); }),
              "Type \"int\" was already defined.");
    m.check_invariant();
}

TEST_F(manager, scopes) {
    unsigned decls = m.get_decls().size();
    unsigned constants = m.num_const_names();
    m.push();
    constant("a");
    m.push();
    constant("b");
    m.create_builtin_type_decl<type_decl>("t", nullptr);
    EXPECT_EQ(m.num_scopes(), 2U);
    m.pop(0);
    EXPECT_TRUE(m.is_global_name_expr(ustring("b")));
    m.pop(1);
    EXPECT_FALSE(m.is_global_name_expr(ustring("b")));
    EXPECT_FALSE(m.is_type_name(ustring("t")));
    EXPECT_TRUE(m.is_global_name_expr(ustring("a")));
    m.push();
    m.push();
    m.pop(3);
    EXPECT_EQ(m.get_decls().size(), decls);
    EXPECT_EQ(m.num_const_names(), constants);
    constant("a");
}

TEST_F(manager, random_scopes_against_a_model) {
    random_stream random(first_seed(77));
    std::vector<std::map<std::string, bool>> model(1);
    for (unsigned i = 0; i < rounds(800); ++i) {
        unsigned action = random.below(10);
        std::string name = "n" + std::to_string(random.below(40));
        if (action == 0) {
            m.push();
            model.push_back(model.back());
        } else if (action == 1 && model.size() > 1) {
            unsigned n = 1 + random.below(static_cast<unsigned>(model.size()) - 1);
            m.pop(n);
            model.resize(model.size() - n);
        } else if (model.back().count(name) != 0) {
            ASSERT_THROW(constant(name), constant_already_defined_exception);
        } else {
            constant(name);
            model.back()[name] = true;
        }
        ASSERT_EQ(m.is_global_name_expr(ustring(name.c_str())), model.back().count(name) != 0);
    }
    m.check_invariant();
}

TEST_F(manager, generated_names_outlive_their_scope_and_what_they_point_to) {
    m.push();
    declare_datatype("list", {{"nil", false}, {"cons", true}});
    shared_ptr<type_decl> color = mk<type_decl>(id("color"), static_cast<type*>(nullptr), -1);
    shared_ptr<identifier> red = id("red");
    identifier* ids[1] = {red.get()};
    color->set_definition(m.create_scalar_type(color.get(), ids, 1, -1).get());
    m.add_global_type_decl(color.get());
    color.reset();
    m.pop(1);
    EXPECT_FALSE(m.is_type_name(ustring("list")));
    for (char const* n : {"nil", "cons", "nil?", "cons?", "get-cons", "red"})
        EXPECT_TRUE(m.is_global_name_expr(ustring(n))) << n;
    shared_ptr<name_expr> cons = m.create_global_name_expr(ustring("cons"), -1);
    ASSERT_TRUE(is_a<constructor_name_expr>(cons.get()));
    constructor_decl* c = static_cast<constructor_name_expr*>(cons.get())->get_constructor();
    EXPECT_EQ(c->get_datatype()->size(), 2U);
    EXPECT_EQ(c->get_datatype()->get_constructor(0)->get_name(), ustring("nil"));
    EXPECT_EQ(c->get_accessor(0)->get_datatype(), c->get_datatype());
    EXPECT_EQ(c->get_recognizer()->get_constructor(), c);
    shared_ptr<name_expr> r = m.create_global_name_expr(ustring("red"), -1);
    ASSERT_TRUE(is_a<scalar_name_expr>(r.get()));
    EXPECT_EQ(static_cast<scalar_name_expr*>(r.get())->get_element()->get_scalar_type()->size(), 1U);
    EXPECT_EQ(text_of([&] { constant("nil"); }), "Constant \"nil\" was already defined.");
    m.check_invariant();
}

// Even when the declaration of the type was never completed.
TEST_F(manager, names_keep_their_type_alive) {
    shared_ptr<type_decl> d = mk<type_decl>(id("t"), static_cast<type*>(nullptr), -1);
    shared_ptr<type_name> t = d->create_type_name(-1);
    shared_ptr<identifier> red = id("red"), c = id("c");
    identifier* ids[1] = {red.get()};
    m.create_scalar_type(d.get(), ids, 1, -1).reset();
    shared_ptr<recognizer_decl> r = recognizer_decl::create_recognizer_decl(c.get(), t.get(), -1);
    shared_ptr<constructor_decl> constructor = mk<constructor_decl>(c, t, r, -1);
    constructor_decl* list[1] = {constructor.get()};
    m.create_datatype(list, 1, -1).reset();
    auto* element = static_cast<scalar_element_decl*>(m.find_const_decl(ustring("red")));
    ASSERT_NE(element->get_scalar_type(), nullptr);
    EXPECT_EQ(element->get_scalar_type()->size(), 1U);
    ASSERT_NE(constructor->get_datatype(), nullptr);
    EXPECT_EQ(constructor->get_datatype()->size(), 1U);
}

TEST_F(manager, datatypes) {
    shared_ptr<type_decl> d = declare_datatype("list", {{"nil", false}, {"cons", true}});
    auto* t = static_cast<datatype*>(d->get_definition());
    constructor_decl* cons = t->get_constructor(1);
    EXPECT_TRUE(cons->is_recursive_constructor());
    EXPECT_FALSE(t->get_constructor(0)->is_recursive_constructor());
    EXPECT_EQ(cons->get_index(), 1);
    EXPECT_EQ(cons->get_accessor(0)->get_index(), 0);
    EXPECT_TRUE(cons->is_constructor_decl() && cons->get_accessor(0)->is_accessor_decl());
    EXPECT_EQ(cons->get_recognizer()->get_name(), ustring("cons?"));
    EXPECT_EQ(cast_type<function_type>(cons->get_type())->get_arity(), 1U);
    EXPECT_TRUE(is_a<type_name>(t->get_constructor(0)->get_type()));
    EXPECT_TRUE(is_a<recognizer_name_expr>(m.create_global_name_expr(ustring("nil?"), -1).get()));
    EXPECT_TRUE(is_a<accessor_name_expr>(m.create_global_name_expr(ustring("get-cons"), -1).get()));
}

TEST_F(manager, faulty_datatypes_change_nothing) {
    unsigned names = m.num_const_names();
    EXPECT_EQ(text_of([&] { m.create_datatype(nullptr, 0, -1); }),
              "Invalid empty datatype. The datatype must contain at least one constructor.");
    EXPECT_EQ(text_of([&] {
                  declare_datatype("t", {{"c", true}});
              }),
              "Invalid datatype. The datatype must contain at least one non-recursive constructor.");
    EXPECT_EQ(text_of([&] {
                  declare_datatype("t", {{"a", false}, {"a", false}});
              }),
              "Constant \"a\" was already defined.");
    EXPECT_EQ(text_of([&] {
                  declare_datatype("t", {{"a", false}, {"b", true}, {"c", true}}, "x");
              }),
              "nothing");
    constant("z?");
    names = m.num_const_names();
    EXPECT_EQ(text_of([&] {
                  declare_datatype("u", {{"y", false}, {"z", false}});
              }),
              "Constant \"z?\" was already defined.")
        << "the recognizer of z";
    EXPECT_EQ(m.num_const_names(), names);
    EXPECT_FALSE(m.is_global_name_expr(ustring("y")));
    m.check_invariant();
}

TEST_F(manager, two_constructors_with_one_accessor_name) {
    shared_ptr<type_decl> d = mk<type_decl>(id("t"), static_cast<type*>(nullptr), -1);
    shared_ptr<type_name> t = d->create_type_name(-1);
    shared_ptr_vector<constructor_decl> list;
    for (char const* c : {"c1", "c2"}) {
        shared_ptr<identifier> cid = id(c);
        shared_ptr<recognizer_decl> r = recognizer_decl::create_recognizer_decl(cid.get(), t.get(), -1);
        shared_ptr<accessor_decl> a =
            mk<accessor_decl>(id("same"), function_type::construct_unary(t.get(), integer(), -1), -1);
        accessor_decl* accessors[1] = {a.get()};
        list.push_back(mk<constructor_decl>(cid, accessors, 1U, t, r, -1).get());
    }
    unsigned names = m.num_const_names();
    EXPECT_EQ(text_of([&] { m.create_datatype(list.data(), 2, -1); }),
              "Constant \"same\" was already defined.");
    EXPECT_EQ(m.num_const_names(), names);
}

TEST_F(manager, scalar_types) {
    shared_ptr<type_decl> d = mk<type_decl>(id("s"), static_cast<type*>(nullptr), -1);
    shared_ptr<identifier> a = id("a"), b = id("b"), plus = id("+");
    identifier* bad[3] = {a.get(), b.get(), plus.get()};
    EXPECT_EQ(text_of([&] { m.create_scalar_type(d.get(), bad, 0, -1); }), "Invalid empty scalar type.");
    EXPECT_EQ(text_of([&] { m.create_scalar_type(d.get(), bad, 3, -1); }),
              "Constant \"+\" was already defined.");
    EXPECT_FALSE(m.is_global_name_expr(ustring("a")));
    identifier* twice[2] = {a.get(), a.get()};
    EXPECT_EQ(text_of([&] { m.create_scalar_type(d.get(), twice, 2, -1); }),
              "Constant \"a\" was already defined.");
    EXPECT_FALSE(m.is_global_name_expr(ustring("a")));
    shared_ptr<scalar_type> t = m.create_scalar_type(d.get(), bad, 2, -1);
    d->set_definition(t.get());
    EXPECT_EQ(t->get_element(1)->get_index(), 1);
    EXPECT_EQ(t->get_element(1)->get_scalar_type(), t.get());
}

TEST_F(manager, subtype_of_a_predicate) {
    const_decl* p = constant("p", function_type::construct_unary(integer(), boolean(), -1).get());
    shared_ptr<subtype> s = m.create_subtype_for_pred(p, -1);
    EXPECT_EQ(s->get_decl()->get_name(), ustring("arg"));
    EXPECT_EQ(s->get_decl()->get_type(), integer());
    EXPECT_FALSE(s->has_free_vars());
    const_decl* c = constant("c");
    EXPECT_EQ(text_of([&] { m.create_subtype_for_pred(c, -1); }),
              "Invalid subtype, \"c\" is not a predicate.");
}

TEST_F(manager, reset_restores_the_numbers) {
    auto ids = [&] {
        std::vector<unsigned> result;
        for (decl* d : m.get_decls()) result.push_back(d->get_id());
        return result;
    };
    std::vector<unsigned> first = ids();
    std::size_t live = m.num_live_nodes();
    for (int i = 0; i < 3; ++i) {
        m.push();
        declare_datatype("list", {{"nil", false}, {"cons", true}});
        e_ptr held = num(1); // released after the reset
        m.reset();
        EXPECT_EQ(ids(), first);
        EXPECT_EQ(m.num_live_nodes(), live + 1);
        EXPECT_EQ(m.num_scopes(), 0U);
        held.reset();
        EXPECT_EQ(m.num_live_nodes(), live) << "recursive types are let go as well";
    }
}

TEST(manager_lifetime, nodes_may_outlive_their_manager) {
    shared_ptr<expr> e;
    {
        ast_manager m;
        shared_ptr<expr> one = mk<numeral_expr>(&m, numeral(1), -1);
        e = mk<application>(m.mk_name<add_decl>(), one, one, -1);
    }
    e.reset();
}

TEST(manager_lifetime, two_managers_keep_apart) {
    ast_manager a;
    ast_manager b;
    shared_ptr<expr> x = mk<numeral_expr>(&a, numeral(1), -1);
    shared_ptr<expr> y = mk<numeral_expr>(&b, numeral(1), -1);
    EXPECT_EQ(x->get_manager(), &a);
    EXPECT_EQ(y->get_manager(), &b);
    EXPECT_EQ(x->get_id(), y->get_id());
    EXPECT_TRUE(x->equals(y.get()));
}

TEST_F(manager, counting_nodes) {
    unsigned before = m.get_num_nodes();
    e_ptr one = num(1);
    e_ptr sum = app<add_decl>({one.get(), one.get()});
    num_nodes_visitor v;
    EXPECT_EQ(v(sum.get()), 3U) << "the application, +, and 1";
    EXPECT_EQ(v(one.get()), 1U);
    shared_ptr<const_decl> d = mk<const_decl>(id("d"), integer(), sum, -1);
    m.add_global_const_decl(d.get(), true);
    // The declaration, its identifier, the application, + and 1; the type int is shared with what was there.
    EXPECT_EQ(m.get_num_nodes(), before + 5);
    std::ostringstream out;
    m.display_info(out);
    EXPECT_EQ(out.str(), "problem information:\n  number of nodes:     " + std::to_string(before + 5) +
                             "\n  number of constants: " + std::to_string(m.num_const_names()) +
                             "\n  number of types:     6\n");
}

} // namespace
} // namespace vexor_test
