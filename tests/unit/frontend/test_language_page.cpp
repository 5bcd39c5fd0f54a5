// The examples of docs/language.md.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <vector>

#include "ast/node/settings.h"
#include "frontend/reserved_symbols.h"
#include "native_text.h"

using namespace vexor;
using namespace vexor_test;

namespace {

struct example {
    unsigned line;    // of the page
    std::string kind; // behind "vexor" in the first line of the block
    std::string text;
};

std::vector<std::string> const& page() {
    static std::vector<std::string> const lines = [] {
        std::vector<std::string> result;
        std::ifstream file(VEXOR_SOURCE_DIR "/docs/language.md");
        for (std::string line; std::getline(file, line);) result.push_back(line);
        return result;
    }();
    return lines;
}

std::vector<example> examples() {
    std::vector<example> result;
    bool inside = false;
    for (unsigned i = 0; i < page().size(); i++) {
        std::string const& line = page()[i];
        if (inside && line == "```") {
            inside = false;
        } else if (inside) {
            result.back().text += line + "\n";
        } else if (line.rfind("```vexor", 0) == 0) {
            inside = true;
            result.push_back({i + 1, line.substr(8), ""});
        }
    }
    return result;
}

std::string read_page(native_text& native, std::string const& text) {
    switched_on type_check(g_type_check);
    std::istringstream stream(text);
    try {
        read_native(&native.m_manager, stream, "page", native.m_contents);
    } catch (vexor_exception const& e) {
        return e.what();
    }
    return "";
}

TEST(language_page, examples_read) {
    unsigned count = 0;
    for (example const& each : examples()) {
        if (each.kind == " error") continue;
        native_text native;
        EXPECT_EQ(read_page(native, each.text), "") << "line " << each.line;
        count++;
    }
    EXPECT_GE(count, 7u);
}

TEST(language_page, examples_of_errors) {
    unsigned count = 0;
    for (example const& each : examples()) {
        if (each.kind != " error") continue;
        std::size_t message = each.text.rfind("; ");
        ASSERT_NE(message, std::string::npos) << "line " << each.line;
        native_text native;
        EXPECT_EQ(read_page(native, each.text.substr(0, message)) + "\n", each.text.substr(message + 2))
            << "line " << each.line;
        count++;
    }
    EXPECT_GE(count, 6u);
}

// "| `expression` | `type` | meaning |"
bool split_row(std::string const& line, std::string& text, std::string& type) {
    if (line.rfind("| `(", 0) != 0) return false;
    std::size_t end = line.find("` | `");
    std::size_t type_end = line.find("` | ", end + 5);
    if (end == std::string::npos || type_end == std::string::npos) return false;
    text = line.substr(3, end - 3);
    type = line.substr(end + 5, type_end - end - 5);
    return true;
}

// Rows of the tables of operators have a type in their second cell; all operators have a row.
TEST(language_page, operators_have_the_types_of_the_page) {
    native_text native;
    for (example const& each : examples()) {
        if (each.kind != " names") continue;
        ASSERT_EQ(read_page(native, each.text), "");
    }
    std::set<std::string> seen;
    for (std::string const& line : page()) {
        std::string text, type;
        if (!split_row(line, text, type)) continue;
        shared_ptr<vexor::expr> e = read_expr_from_string(&native.m_manager, text.c_str());
        EXPECT_EQ(text_of(e->get_type()), type) << line;
        EXPECT_EQ(read_page(native, "(assert " + text + ")"), "") << line;
        seen.insert(to_app(e.get())->get_fun()->get_cls_name());
    }
#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY) EXPECT_TRUE(seen.count(#X)) << TEXT;
#include "ast/node/builtin_ops.def"
}

TEST(language_page, reserved_words) {
    std::string words;
    for (std::string const& line : page()) {
        if (line.rfind("    ", 0) == 0 && line[4] != ' ') words += line + " ";
    }
    std::istringstream in(words);
    unsigned count = 0;
    for (std::string word; in >> word; count++)
        EXPECT_NE(g_reserved_symbols.find(word.c_str()), token::identifier) << word;
    EXPECT_EQ(count, 88u);
}

} // namespace
