// Documents and their layout.
#include "ast/print/pp_doc.h"
#include "support/random.h"
#include "support/small_stack.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

namespace vexor::pp {
namespace {

std::string print(shared_ptr<doc> const& d, layout_config const& config = {}, int indent = 0) {
    std::ostringstream out;
    d->display(out, indent, config);
    return out.str();
}

layout_config narrow(int width) {
    layout_config config;
    config.m_max_width = width;
    config.m_max_ribbon = width;
    return config;
}

shared_ptr<doc> seq(std::vector<char const*> const& words) {
    std::vector<shared_ptr<doc>> rest;
    for (std::size_t i = 1; i < words.size(); ++i) rest.push_back(text(words[i]));
    return pp_seq_style2(text(words[0]), rest, 2);
}

TEST(pp_doc, defaults_of_the_layout) {
    EXPECT_EQ(g_default_layout_config.m_max_width, 80);
    EXPECT_EQ(g_default_layout_config.m_max_ribbon, 60);
    EXPECT_EQ(g_default_layout_config.m_max_num_lines, 0x100000);
    EXPECT_EQ(g_default_layout_config.m_max_indent, 0x100000);
    EXPECT_FALSE(g_default_layout_config.m_single_line);
    EXPECT_FALSE(g_default_layout_config.m_truncate);
}

TEST(pp_doc, small_documents) {
    EXPECT_EQ(print(nil()), "");
    EXPECT_EQ(print(text("abc")), "abc");
    EXPECT_EQ(print(bdoc(3)), "   ");
    EXPECT_EQ(print(bdoc(0)), "");
    EXPECT_EQ(print(bdoc(-2)), "");
    EXPECT_EQ(print(doc::m_space), " ");
    EXPECT_EQ(print(int2doc(-17)), "-17");
    EXPECT_EQ(print(int2doc(-2147483647 - 1)), "-2147483648");
    EXPECT_EQ(print(unsigned2doc(4294967295U)), "4294967295");
    EXPECT_EQ(print(endl(), {}, 3), "\n   ");
    EXPECT_EQ(print(endl(", "), {}, 1), "\n ");
    EXPECT_EQ(print(endl()->flatten()), " ");
    EXPECT_EQ(print(endl(", ")->flatten()), ", ");
}

TEST(pp_doc, a_group_fits_or_breaks) {
    shared_ptr<doc> d = seq({"f", "aa", "bb"});
    EXPECT_EQ(print(d), "(f aa bb)");
    EXPECT_EQ(print(d, narrow(9)), "(f aa bb)");
    EXPECT_EQ(print(d, narrow(8)), "(f\n  aa\n  bb)");
    EXPECT_EQ(print(d, narrow(0)), "(f\n  aa\n  bb)");
    shared_ptr<doc> outer = pp_seq_style2(text("g"), {d, text("c")}, 2);
    EXPECT_EQ(print(outer, narrow(13)), "(g\n  (f aa bb)\n  c)");
    EXPECT_EQ(print(outer, narrow(10)), "(g\n  (f\n    aa\n    bb)\n  c)");
}

TEST(pp_doc, sequence_style_1) {
    shared_ptr<doc> d = pp_seq_style1({text("aaa"), text("bbb"), text("ccc")}, 2);
    EXPECT_EQ(print(d), "(aaa bbb ccc)");
    EXPECT_EQ(print(d, narrow(12)), "(aaa\n  bbb\n  ccc)");
    EXPECT_EQ(print(pp_seq_style1({}, 2)), "()");
    EXPECT_EQ(print(pp_seq_style1({text("a")}, 2), narrow(1)), "(a)");
    EXPECT_EQ(print(pp_seq_style2(text("a"), {}, 2), narrow(1)), "(a)");
}

TEST(pp_doc, the_ribbon_limits_the_text_without_the_indentation) {
    layout_config config;
    config.m_max_width = 80;
    config.m_max_ribbon = 8;
    EXPECT_EQ(print(seq({"f", "aa", "bb"}), config), "(f\n  aa\n  bb)");
    config.m_max_ribbon = 9;
    EXPECT_EQ(print(seq({"f", "aa", "bb"}), config), "(f aa bb)");
    shared_ptr<composite_doc> d = indented(20);
    d << endl() << seq({"f", "aa", "bb"});
    EXPECT_EQ(print(d, config), "\n                    (f aa bb)");
    config.m_max_width = 28;
    EXPECT_EQ(print(d, config),
              "\n                    (f\n                      aa\n                      bb)");
}

TEST(pp_doc, text_before_a_group_takes_its_room) {
    shared_ptr<composite_doc> d = composite();
    d << "0123" << seq({"f", "aa"});
    EXPECT_EQ(print(d, narrow(10)), "0123(f aa)");
    EXPECT_EQ(print(d, narrow(9)), "0123(f\n  aa)");
}

TEST(pp_doc, a_single_line_has_no_newline) {
    layout_config config = narrow(3);
    config.m_single_line = true;
    EXPECT_EQ(print(pp_seq_style2(text("g"), {seq({"f", "aa", "bb"}), text("c")}, 2), config),
              "(g (f aa bb) c)");
    EXPECT_EQ(print(endl(", "), config), " ");
}

TEST(pp_doc, truncated_text) {
    layout_config config = narrow(4);
    config.m_truncate = true;
    EXPECT_EQ(print(text("abcd"), config), "abcd");
    EXPECT_EQ(print(text("abcde"), config), " ...");
    shared_ptr<composite_doc> d = composite();
    d << "abc"
      << "de"
      << "f" << endl() << "gh";
    EXPECT_EQ(print(d, config), "abc ...\ngh");
    config.m_single_line = true;
    EXPECT_EQ(print(d, config), "abc ...");
}

TEST(pp_doc, the_number_of_lines_is_limited) {
    layout_config config;
    config.m_max_num_lines = 2;
    shared_ptr<composite_doc> d = composite();
    d << "a" << endl() << "b" << endl() << "c" << endl() << "d";
    EXPECT_EQ(print(d, config), "a\nb ...\n");
    config.m_max_num_lines = 4;
    EXPECT_EQ(print(d, config), "a\nb\nc\nd");
    config.m_max_num_lines = 0;
    EXPECT_EQ(print(d, config), "");
}

TEST(pp_doc, the_indentation_is_limited) {
    layout_config config;
    config.m_max_indent = 3;
    shared_ptr<composite_doc> inner = indented(2);
    inner << endl() << "b";
    shared_ptr<composite_doc> outer = indented(2);
    outer << endl() << "a" << inner;
    EXPECT_EQ(print(outer, config), "\n  a\n   b");
    EXPECT_EQ(print(endl(), config, 10), "\n   ");
    config.m_max_indent = 0x7fffffff;
    EXPECT_EQ(print(outer, config), "\n  a\n    b");
}

TEST(pp_doc, flatten) {
    shared_ptr<composite_doc> d = indented(2);
    d << "a" << endl() << "b" << endl("-") << (text("first") | text("second"));
    shared_ptr<doc> flat = d->flatten();
    EXPECT_EQ(print(flat, narrow(1)), "a b-first");
    EXPECT_TRUE(flat->is_flat());
    EXPECT_EQ(flat->flatten().get(), flat.get());
    EXPECT_FALSE(flat->length_upto_nl().m_has_break);
    EXPECT_EQ(flat->length_upto_nl().m_length, 9);
    EXPECT_EQ(nil()->flatten().get(), nil().get());
}

TEST(pp_doc, first_lines) {
    shared_ptr<composite_doc> d = composite();
    d << "abc"
      << "de";
    EXPECT_EQ(d->length_upto_nl().m_length, 5);
    EXPECT_FALSE(d->length_upto_nl().m_has_break);
    d << endl() << "fgh";
    EXPECT_EQ(d->length_upto_nl().m_length, 5);
    EXPECT_TRUE(d->length_upto_nl().m_has_break);
    EXPECT_TRUE(d->fits(5));
    EXPECT_FALSE(d->fits(4));
    EXPECT_TRUE(nil()->fits(0));
    EXPECT_FALSE(nil()->fits(-1));
}

TEST(pp_doc, a_length_beyond_every_number_is_a_long_line) {
    // Doubling 200 times: a document of 2^200 characters in 200 objects.
    shared_ptr<doc> d = text("x");
    for (int i = 0; i < 200; ++i) {
        shared_ptr<composite_doc> next = composite();
        next << d << d;
        d = next;
    }
    EXPECT_EQ(d->length_upto_nl().m_length, first_line::max_length);
    EXPECT_FALSE(d->fits(80));
}

TEST(pp_doc, choice_takes_the_second_when_the_first_is_too_wide) {
    shared_ptr<doc> d = text("long text") | text("short");
    EXPECT_EQ(print(d, narrow(9)), "long text");
    EXPECT_EQ(print(d, narrow(8)), "short");
    EXPECT_EQ(print(group(text("abc")), narrow(1)), "abc");
}

TEST(pp_doc, stream_operator_uses_the_default_layout) {
    std::ostringstream out;
    out << seq({"f", "aa"});
    shared_ptr<composite_doc> d = composite();
    d << "|" << seq({"g", "bb"});
    out << d;
    EXPECT_EQ(out.str(), "(f aa)|(g bb)");
}

// A layout computed from the text alone, without any of the cached lengths: the reference for random
// documents.
struct node {
    int m_kind = 0; // 0 text, 1 break, 2 group of children indented by 2
    std::string m_text;
    std::vector<node> m_children;
};

std::string flat_text(node const& n) {
    if (n.m_kind == 0) return n.m_text;
    if (n.m_kind == 1) return " ";
    std::string result;
    for (node const& c : n.m_children) result += flat_text(c);
    return result;
}

bool has_break(node const& n) {
    if (n.m_kind == 1) return true;
    for (node const& c : n.m_children)
        if (has_break(c)) return true;
    return false;
}

// A break that is flat prints as "~" here: text, not indentation.
void reference_print(node const& n, int width, int ribbon, int indent, bool flat, std::string& out) {
    std::size_t start = out.rfind('\n') == std::string::npos ? 0 : out.rfind('\n') + 1;
    int column = static_cast<int>(out.size() - start);
    if (n.m_kind == 0) out += n.m_text;
    if (n.m_kind == 1) out += flat ? "~" : "\n" + std::string(static_cast<std::size_t>(indent), ' ');
    if (n.m_kind != 2) return;
    int blanks = 0; // the indentation of the current line
    while (start > 0 && start + static_cast<std::size_t>(blanks) < out.size() &&
           out[start + static_cast<std::size_t>(blanks)] == ' ')
        ++blanks;
    int room = std::min(width - column, ribbon - (column - blanks));
    bool fits = static_cast<int>(flat_text(n).size()) <= room;
    for (node const& c : n.m_children)
        reference_print(c, width, ribbon, indent + 2, flat || (has_break(n) && fits), out);
}

node random_node(vexor_test::random_stream& random, int depth) {
    node n;
    n.m_kind = depth == 0 ? static_cast<int>(random.below(2)) : static_cast<int>(random.below(3));
    if (n.m_kind == 0) n.m_text = std::string(1 + random.below(6), static_cast<char>('a' + random.below(26)));
    if (n.m_kind != 2) return n;
    for (auto i = random.below(5); i > 0; --i) n.m_children.push_back(random_node(random, depth - 1));
    return n;
}

shared_ptr<doc> to_doc(node const& n) {
    if (n.m_kind == 0) return text(n.m_text);
    if (n.m_kind == 1) return endl();
    shared_ptr<composite_doc> d = indented(2);
    for (node const& c : n.m_children) d << to_doc(c);
    d->check_invariant();
    return group(d);
}

TEST(pp_doc, random_documents_against_a_reference) {
    for (unsigned seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE(seed);
        vexor_test::random_stream random(seed);
        node n = random_node(random, 5);
        layout_config config;
        config.m_max_width = static_cast<int>(random.below(40));
        config.m_max_ribbon = static_cast<int>(random.below(40));
        std::string expected;
        reference_print(n, config.m_max_width, config.m_max_ribbon, 0, false, expected);
        std::replace(expected.begin(), expected.end(), '~', ' ');
        ASSERT_EQ(print(to_doc(n), config), expected);
    }
}

TEST(pp_doc, deep_documents) {
    vexor_test::on_small_stack([] {
        constexpr int depth = 100000;
        shared_ptr<doc> d = text("x");
        for (int i = 0; i < depth; ++i) d = pp_seq_style2(text("f"), {d}, 2);
        layout_config config;
        config.m_max_indent = 10;
        std::string out = print(d, config);
        EXPECT_EQ(out.size(), std::count(out.begin(), out.end(), '\n') +
                                  std::count(out.begin(), out.end(), ' ') + std::size_t{3} * depth + 1);
        EXPECT_EQ(print(d->flatten()).size(), std::size_t{4} * depth + 1);
        shared_ptr<doc> chain = text("x");
        for (int i = 0; i < depth; ++i) {
            shared_ptr<composite_doc> next = composite();
            next << "a" << endl() << chain;
            chain = next;
        }
        EXPECT_EQ(print(chain->flatten()).size(), std::size_t{2} * depth + 1);
    });
}

TEST(pp_doc, wide_documents) {
    std::vector<shared_ptr<doc>> elements;
    for (int i = 0; i < 200000; ++i) elements.push_back(seq({"f", "x", "y"}));
    std::string out = print(pp_seq_style2(text("and"), elements, 2));
    EXPECT_EQ(out.size(), 4 + 200000 * std::size_t{10} + 1);
}

} // namespace
} // namespace vexor::pp
