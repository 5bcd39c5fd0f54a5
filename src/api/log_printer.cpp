#include "api/log_printer.h"

#include "ast/node/nodes.h"
#include "base/deep_stack.h"
#include "frontend/lexer.h"

#include <climits>
#include <cstring>
#include <sstream>
#include <vector>

namespace vexor {

namespace {

// Does a lexer read the name as one identifier, whatever stands behind it?
bool reads_as_name(char const* name) {
    for (char const* rest : {"::", ")"}) {
        std::istringstream stream(std::string(name) + rest);
        position_tracker tracker;
        tracker.new_file(nullptr);
        lexer words(stream, &tracker);
        try {
            if (words.next_token() != token::identifier || std::strcmp(words.get_text(), name) != 0)
                return false;
            token const behind = words.next_token();
            if (behind != (*rest == ')' ? token::right_paren : token::double_colon)) return false;
        } catch (vexor_exception const&) {
            return false;
        }
    }
    return true;
}

constexpr char const* stand_in_prefix = "log!";

bool needs_stand_in(char const* name) {
    // Defined in each new context of the language, but not by this interface.
    for (char const* predefined : {"div", "mod"})
        if (std::strcmp(name, predefined) == 0) return true;
    return std::strncmp(name, stand_in_prefix, std::strlen(stand_in_prefix)) == 0 || !reads_as_name(name);
}

// The parts of a term that would be repeated, parts before what they are part of, and the length of the text
// in nodes.
class sharing {
public:
    explicit sharing(ast* root) {
        on_deep_stack([&] { measure(root); });
        m_size = *m_sizes.find(root);
    }

    [[nodiscard]] double text_size() const { return m_size; }
    [[nodiscard]] unsigned num_nodes() const { return m_sizes.size(); }
    [[nodiscard]] std::vector<expr*> shared_parts() const {
        std::vector<expr*> result;
        for (expr* e : m_order)
            if (*m_num_uses.find(e) > 1) result.push_back(e);
        return result;
    }

private:
    // Types and the uses of names are leaves.
    double measure(ast* node) {
        check_depth();
        if (unsigned* uses = m_num_uses.find(node)) {
            ++*uses;
            return *m_sizes.find(node);
        }
        m_num_uses.insert(node, 1);
        double size = 1;
        auto add = [&](ast* part) { size += measure(part); };
        bool is_composite = true;
        if (node->is_expr() && static_cast<expr*>(node)->is_application()) {
            auto* a = static_cast<application*>(node);
            add(a->get_fun());
            for (expr* arg : a->get_args()) add(arg);
        } else if (is_a<function_update_expr>(node)) {
            auto* u = static_cast<function_update_expr*>(node);
            add(u->get_target());
            for (expr* arg : u->get_args()) add(arg);
            add(u->get_new_value());
        } else if (is_a<tuple_literal>(node)) {
            for (expr* part : static_cast<tuple_literal*>(node)->get_exprs()) add(part);
        } else {
            is_composite = false;
        }
        if (is_composite) m_order.push_back(static_cast<expr*>(node));
        m_sizes.insert(node, size);
        return size;
    }

    double m_size = 0;                                       // of the root's text, in nodes
    hash_map<ast*, double, fast_ptr_hash<ast>> m_sizes;      // of the text of each node met
    hash_map<ast*, unsigned, fast_ptr_hash<ast>> m_num_uses; // places that hold the node
    std::vector<expr*> m_order;                              // composite nodes, parts first
};

class log_printer : public pp_visitor {
public:
    explicit log_printer(log_names& names)
        : m_names(names) {}

    std::string print(ast* node) {
        sharing const parts(node);
        constexpr double free_repetition = 1000;
        std::vector<expr*> bound;
        if (parts.text_size() > 4.0 * parts.num_nodes() + free_repetition) bound = parts.shared_parts();
        std::ostringstream out;
        for (std::size_t i = 0; i < bound.size(); ++i) {
            std::string const name = std::string(stand_in_prefix) + "let!" + std::to_string(i + 1);
            out << "(let ((" << name << " ";
            display(out, bound[i]);
            out << ")) ";
            m_bound.insert(bound[i], name);
        }
        display(out, node);
        return out.str() + std::string(bound.size(), ')');
    }

    // Built-in names are the language's own.
    using pp_visitor::visit;
    void visit(decl* n) override { set_name(n->get_name()); }
    void visit(type_name* n) override {
        if (is_a<type_name>(n))
            set_name(n->get_decl()->get_name());
        else
            pp_visitor::visit(n);
    }
    void visit(name_expr* n) override {
        if (is_a<name_expr>(n))
            set_name(n->get_name());
        else
            pp_visitor::visit(n);
    }

protected:
    shared_ptr<pp::doc> accept(ast* a) override {
        if (a != m_root)
            if (std::string const* name = m_bound.find(a)) return pp::text(*name);
        return pp_visitor::accept(a);
    }

private:
    void display(std::ostream& out, ast* node) {
        m_root = node;
        pp::layout_config config = pp::g_default_layout_config;
        config.m_max_width = config.m_max_ribbon = config.m_max_num_lines = INT_MAX;
        config.m_single_line = true;
        (*this)(node)->display(out, 0, config);
    }
    void set_name(ustring const& name) { m_result = pp::text(m_names.written(name).c_str()); }

    log_names& m_names;                                      // not owned
    ast* m_root = nullptr;                                   // what is being printed
    hash_map<ast*, std::string, fast_ptr_hash<ast>> m_bound; // names of the parts bound by a let
};

} // namespace

ustring log_names::written(ustring const& name) {
    if (ustring const* known = m_known.find(name)) return *known;
    ustring result = name;
    if (needs_stand_in(name.c_str()))
        result = ustring((stand_in_prefix + std::to_string(++m_num_stand_ins)).c_str());
    m_known.insert(name, result);
    return result;
}

std::string log_text(ast* node, log_names& names) { return log_printer(names).print(node); }

} // namespace vexor
