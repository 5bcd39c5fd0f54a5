#include "ast/print/pp_doc.h"

#include "base/debug.h"
#include "base/deep_stack.h"

#include <algorithm>
#include <ostream>

namespace vexor::pp {

layout_config g_default_layout_config;

shared_ptr<doc> const doc::m_space(new text_doc(" "));

namespace {

int saturated_sum(int a, std::size_t b) {
    VEXOR_ASSERT(a >= 0 && a <= first_line::max_length);
    if (b >= static_cast<std::size_t>(first_line::max_length - a)) return first_line::max_length;
    return a + static_cast<int>(b);
}

void print_text(layout_context& ctx, std::string const& text) {
    int end = saturated_sum(std::min(ctx.m_column, first_line::max_length), text.size());
    if (ctx.m_config.m_truncate) {
        int limit = ctx.m_config.m_max_width;
        if (ctx.m_column > limit) return;
        if (end > limit) {
            ctx.m_out << " ...";
            ctx.m_column = end;
            return;
        }
    }
    ctx.m_column = end;
    ctx.m_ribbon = saturated_sum(std::min(ctx.m_ribbon, first_line::max_length), text.size());
    ctx.m_out << text;
}

shared_ptr<doc> const& left_paren() {
    static shared_ptr<doc> const result(new text_doc("("));
    return result;
}

shared_ptr<doc> const& right_paren() {
    static shared_ptr<doc> const result(new text_doc(")"));
    return result;
}

void print_blanks(std::ostream& out, int n) {
    static constexpr char blanks[] = "                                                                ";
    constexpr int chunk = sizeof(blanks) - 1;
    for (; n > 0; n -= chunk) out.write(blanks, std::min(n, chunk));
}

} // namespace

void doc::display(std::ostream& out, int indent, layout_config const& config) const {
    layout_context ctx(out, config);
    on_deep_stack([&] { display_core(ctx, indent); });
}

first_line text_doc::length_upto_nl() const { return {saturated_sum(0, m_text.size()), false}; }

void text_doc::display_core(layout_context& ctx, int) const { print_text(ctx, m_text); }

void line_break::display_core(layout_context& ctx, int indent) const {
    if (ctx.m_config.m_single_line) {
        m_space->display_core(ctx, indent);
        return;
    }
    indent = std::max(0, std::min(indent, ctx.m_config.m_max_indent));
    ctx.m_ribbon = 0;
    ctx.m_column = indent;
    ++ctx.m_line;
    if (ctx.out_of_lines()) {
        ctx.m_out << " ...\n";
        return;
    }
    ctx.m_out << '\n';
    print_blanks(ctx.m_out, indent);
}

void composite_doc::push_back(shared_ptr<doc> const& d) {
    VEXOR_ASSERT(!m_sealed);
    VEXOR_ASSERT(d.get() != this);
    d->seal();
    m_children.push_back(d);
    m_is_flat = m_is_flat && d->is_flat();
    if (m_first_line.m_has_break) return;
    first_line next = d->length_upto_nl();
    m_first_line.m_length = saturated_sum(m_first_line.m_length, static_cast<std::size_t>(next.m_length));
    m_first_line.m_has_break = next.m_has_break;
}

void composite_doc::display_core(layout_context& ctx, int indent) const {
    check_depth();
    for (shared_ptr<doc> const& child : m_children) {
        if (ctx.out_of_lines()) return;
        child->display_core(ctx, indent);
    }
}

shared_ptr<doc> composite_doc::flatten() {
    if (m_is_flat) return this;
    return flatten_children();
}

shared_ptr<doc> composite_doc::flatten_children() const {
    return on_deep_stack([&]() -> shared_ptr<doc> {
        check_depth();
        shared_ptr<composite_doc> result = composite();
        result->reserve(m_children.size());
        for (shared_ptr<doc> const& child : m_children) result->push_back(child->flatten());
        return result;
    });
}

void composite_doc::check_invariant() const {
    first_line line;
    bool flat = true;
    for (shared_ptr<doc> const& child : m_children) {
        flat = flat && child->is_flat();
        if (line.m_has_break) continue;
        first_line next = child->length_upto_nl();
        line = {saturated_sum(line.m_length, static_cast<std::size_t>(next.m_length)), next.m_has_break};
    }
    VEXOR_ASSERT(flat == m_is_flat);
    VEXOR_ASSERT(line.m_length == m_first_line.m_length);
    VEXOR_ASSERT(line.m_has_break == m_first_line.m_has_break);
}

void indented_composite_doc::display_core(layout_context& ctx, int indent) const {
    int limit = ctx.m_config.m_max_indent;
    composite_doc::display_core(ctx, indent < limit - m_indent ? indent + m_indent : limit);
}

choice_doc::choice_doc(shared_ptr<doc> first, shared_ptr<doc> second)
    : m_first(std::move(first))
    , m_second(std::move(second))
    , m_first_line(m_first->length_upto_nl()) {
    m_first->seal();
    m_second->seal();
}

void choice_doc::display_core(layout_context& ctx, int indent) const {
    check_depth();
    int width = ctx.m_config.m_max_width - ctx.m_column;
    int ribbon = ctx.m_config.m_max_ribbon - ctx.m_ribbon;
    doc const* chosen = m_first->fits(std::min(width, ribbon)) ? m_first : m_second;
    chosen->display_core(ctx, indent);
}

shared_ptr<doc> const& nil() {
    static shared_ptr<doc> const result(new nil_doc);
    return result;
}

shared_ptr<doc> text(std::string t) { return new text_doc(std::move(t)); }

shared_ptr<doc> bdoc(int n) { return text(std::string(static_cast<std::size_t>(std::max(n, 0)), ' ')); }

shared_ptr<doc> const& endl() {
    static shared_ptr<doc> const result(new line_break);
    return result;
}

shared_ptr<doc> endl(char const* flat_text) { return new line_break_ext(flat_text); }

shared_ptr<doc> int2doc(int i) { return text(std::to_string(i)); }

shared_ptr<doc> unsigned2doc(unsigned u) { return text(std::to_string(u)); }

shared_ptr<doc> group(shared_ptr<doc> const& d) {
    if (d->is_flat()) return d;
    return d->flatten() | d;
}

shared_ptr<doc> operator|(shared_ptr<doc> const& first, shared_ptr<doc> const& second) {
    return new choice_doc(first, second);
}

shared_ptr<composite_doc> composite() { return new composite_doc; }

shared_ptr<composite_doc> indented(int indent) { return new indented_composite_doc(indent); }

std::ostream& operator<<(std::ostream& out, doc const& d) {
    d.display(out, 0, g_default_layout_config);
    return out;
}

// Both sequences are the most frequent documents of all: their parentheses are shared.
shared_ptr<doc> pp_seq_style1(std::vector<shared_ptr<doc>> const& elements, int indent) {
    shared_ptr<composite_doc> seq = indented(indent);
    seq->reserve(2 * elements.size() + 1);
    seq << left_paren();
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) seq << endl();
        seq << elements[i];
    }
    seq << right_paren();
    return group(seq);
}

shared_ptr<doc> pp_seq_style2(shared_ptr<doc> const& head, std::vector<shared_ptr<doc>> const& rest,
                              int indent) {
    shared_ptr<composite_doc> seq = indented(indent);
    seq->reserve(2 * rest.size() + 3);
    seq << left_paren() << head;
    for (shared_ptr<doc> const& element : rest) seq << endl() << element;
    seq << right_paren();
    return group(seq);
}

} // namespace vexor::pp
