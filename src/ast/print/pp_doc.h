// Documents: text with places where lines may break, laid out in a given width.
//
// Keeps:   a document does not change once it is part of another one, so each knows the length of its first
// line
//          from the day it was put together, and the choice between one line and several is one comparison.
// Cost:    group is linear in the direct parts of a document (groups inside it are flat already), display is
// linear
//          in the output.
// Source:  Wadler: A prettier printer, in: The Fun of Programming, 2003, for the documents and the choice of
// layouts;
//          the test for the room looks at a group alone, not at what follows it on the line.
#pragma once

#include "base/shared_ptr.h"

#include <iosfwd>
#include <string>
#include <type_traits>
#include <vector>

namespace vexor::pp {

struct layout_config {
    int m_max_width = 80;           // the column limit
    int m_max_ribbon = 60;          // the limit of text on one line, without the indentation
    int m_max_num_lines = 0x100000; // lines to print before giving up
    int m_max_indent = 0x100000;    // the indentation never passes this
    bool m_single_line = false;     // line breaks print as one blank
    bool m_truncate = false;        // text past m_max_width is cut
};

extern layout_config g_default_layout_config;

// Where a display stands.
struct layout_context {
    layout_context(std::ostream& out, layout_config const& config)
        : m_out(out)
        , m_config(config) {}

    std::ostream& m_out;
    layout_config m_config;
    int m_column = 0; // characters on the current line
    int m_ribbon = 0; // those of them that are no indentation
    int m_line = 0;   // line breaks printed

    bool out_of_lines() const { return m_line >= m_config.m_max_num_lines; }
};

// What stands in front of the first line break of a document.
struct first_line {
    int m_length = 0;         // at most max_length
    bool m_has_break = false; // is there a line break at all

    static constexpr int max_length = 0x40000000; // longer lines count as this
};

class doc : public core_shared_obj<shared_obj_base> {
public:
    virtual first_line length_upto_nl() const = 0;
    // Prints with line breaks at the given indentation. Recursive: display is the entry.
    virtual void display_core(layout_context& ctx, int indent) const = 0;
    // The document with its line breaks resolved into text.
    virtual shared_ptr<doc> flatten() = 0;
    // Does flatten return the document itself?
    virtual bool is_flat() const { return true; }
    // The document became part of another one.
    virtual void seal() {}

    void display(std::ostream& out, int indent, layout_config const& config) const;
    // Does the first line fit in so many columns?
    bool fits(int width) const { return length_upto_nl().m_length <= width; }

    static shared_ptr<doc> const m_space; // one blank
};

class nil_doc : public doc {
public:
    first_line length_upto_nl() const override { return {}; }
    void display_core(layout_context&, int) const override {}
    shared_ptr<doc> flatten() override { return this; }
};

class text_doc : public doc {
public:
    explicit text_doc(char const* text)
        : m_text(text) {}
    explicit text_doc(std::string text)
        : m_text(std::move(text)) {}
    first_line length_upto_nl() const override;
    void display_core(layout_context& ctx, int indent) const override;
    shared_ptr<doc> flatten() override { return this; }
    std::string const& get_text() const { return m_text; }

private:
    std::string m_text; // without newlines
};

// A newline and the indentation; a blank when flat.
class line_break : public doc {
public:
    first_line length_upto_nl() const override { return {0, true}; }
    void display_core(layout_context& ctx, int indent) const override;
    shared_ptr<doc> flatten() override { return m_space; }
    bool is_flat() const override { return false; }
};

// A line break that is a text of its own when flat.
class line_break_ext : public line_break {
public:
    explicit line_break_ext(char const* flat_text)
        : m_flat(new text_doc(flat_text)) {}
    shared_ptr<doc> flatten() override { return m_flat; }

private:
    shared_ptr<doc> m_flat; // what it is when flat
};

// One document after the other.
class composite_doc : public doc {
public:
    void push_back(shared_ptr<doc> const& d);
    // Makes room for n documents.
    void reserve(std::size_t n) { m_children.reserve(n); }
    first_line length_upto_nl() const override { return m_first_line; }
    void display_core(layout_context& ctx, int indent) const override;
    shared_ptr<doc> flatten() override;
    bool is_flat() const override { return m_is_flat; }
    void seal() override { m_sealed = true; }

    unsigned size() const { return static_cast<unsigned>(m_children.size()); }
    doc* get_child(unsigned i) const { return m_children[i]; }
    void check_invariant() const;

protected:
    // A plain composite of the flattened children.
    shared_ptr<doc> flatten_children() const;

private:
    std::vector<shared_ptr<doc>> m_children; // in the order of the text
    first_line m_first_line;                 // of all children together
    bool m_is_flat = true;                   // are all children flat
    bool m_sealed = false;                   // is it part of another document: no more push_back
};

// A composite whose line breaks stand further to the right.
class indented_composite_doc : public composite_doc {
public:
    explicit indented_composite_doc(int indent)
        : m_indent(indent) {}
    void display_core(layout_context& ctx, int indent) const override;
    int get_indent() const { return m_indent; }

private:
    int m_indent; // added to the indentation
};

// The first document if its first line fits, else the second.
class choice_doc : public doc {
public:
    choice_doc(shared_ptr<doc> first, shared_ptr<doc> second);
    first_line length_upto_nl() const override { return m_first_line; }
    void display_core(layout_context& ctx, int indent) const override;
    shared_ptr<doc> flatten() override { return m_first; }
    bool is_flat() const override { return false; }
    doc* get_first() const { return m_first; }
    doc* get_second() const { return m_second; }

private:
    shared_ptr<doc> m_first;
    shared_ptr<doc> m_second;
    first_line m_first_line; // of m_first
};

shared_ptr<doc> const& nil();
shared_ptr<doc> text(std::string t);
// That many blanks; none for a negative number.
shared_ptr<doc> bdoc(int n);
// A line break that is a blank when flat.
shared_ptr<doc> const& endl();
// A line break that is the given text when flat.
shared_ptr<doc> endl(char const* flat_text);
shared_ptr<doc> int2doc(int i);
shared_ptr<doc> unsigned2doc(unsigned u);
// On one line if it fits, else broken.
shared_ptr<doc> group(shared_ptr<doc> const& d);
shared_ptr<doc> operator|(shared_ptr<doc> const& first, shared_ptr<doc> const& second);

shared_ptr<composite_doc> composite();
shared_ptr<composite_doc> indented(int indent);

// Appends to a composite.
template <class C>
requires std::is_base_of_v<composite_doc, C> shared_ptr<C>
const& operator<<(shared_ptr<C> const& c, shared_ptr<doc> const& d) {
    c->push_back(d);
    return c;
}
template <class C>
requires std::is_base_of_v<composite_doc, C> shared_ptr<C>
const& operator<<(shared_ptr<C> const& c, char const* t) {
    c->push_back(text(t));
    return c;
}

// With the default configuration, at indentation 0.
std::ostream& operator<<(std::ostream& out, doc const& d);
template <class D>
requires std::is_base_of_v<doc, D> std::ostream& operator<<(std::ostream& out, shared_ptr<D> const& d) {
    return out << static_cast<doc const&>(*d);
}

// A parenthesized sequence: all on one line if it fits, otherwise every element on a line of its own, the
// first behind the parenthesis and the others indented.
shared_ptr<doc> pp_seq_style1(std::vector<shared_ptr<doc>> const& elements, int indent);
// A parenthesized sequence: all on one line if it fits, otherwise the head on the first line and every other
// element on a line of its own, indented.
shared_ptr<doc> pp_seq_style2(shared_ptr<doc> const& head, std::vector<shared_ptr<doc>> const& rest,
                              int indent);

} // namespace vexor::pp
