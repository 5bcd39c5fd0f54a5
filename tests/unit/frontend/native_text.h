// Native texts read into a manager of their own, and what comes of them.
#pragma once

#include <sstream>
#include <string>

#include "ast/node/ast_exceptions.h"
#include "ast/node/ast_manager.h"
#include "base/exceptions.h"
#include "frontend/native_reader.h"
#include "frontend/parser.h"
#include "frontend/read_term.h"

namespace vexor_test {

// The printed form of a node on one line.
inline std::string text_of(vexor::ast* node) {
    std::ostringstream out;
    node->display(out);
    std::string result;
    for (char c : out.str()) {
        if (c == '\n') c = ' ';
        if (c != ' ' || result.empty() || result.back() != ' ') result += c;
    }
    return result;
}

class native_text {
public:
    vexor::ast_manager m_manager;
    vexor::native_contents m_contents;

    // Reads commands; the message of the exception that ends the reading, empty for none.
    std::string read(std::string const& text) {
        std::istringstream stream(text);
        try {
            vexor::read_native(&m_manager, stream, "f", m_contents);
        } catch (vexor::vexor_exception const& e) {
            return e.what();
        }
        return "";
    }
    // Reads one expression; its printed form, or the message.
    std::string expr(std::string const& text) {
        std::istringstream stream(text);
        try {
            return text_of(vexor::read_expr(&m_manager, stream, "f").get());
        } catch (vexor::vexor_exception const& e) {
            return e.what();
        }
    }
    std::string type(std::string const& text) {
        std::istringstream stream(text);
        try {
            return text_of(vexor::read_type(&m_manager, stream, "f").get());
        } catch (vexor::vexor_exception const& e) {
            return e.what();
        }
    }
    // The printed form of the last command read.
    std::string last() { return text_of(m_contents[m_contents.size() - 1]); }

    std::string print(vexor::print_mode mode) {
        std::ostringstream out;
        vexor::print_native(out, m_contents, mode);
        return out.str();
    }
};

// The message of an exception at offset pos of the first line of the file "f".
inline std::string at(int pos, std::string const& message) {
    return "[f, line(1), column(" + std::to_string(pos + 1) + "), position(" + std::to_string(pos) +
           ")]: " + message;
}

inline std::string unexpected(std::string const& found, std::string const& expected) {
    return "Unexpected token '" + found + "'. '" + expected + "' expected.";
}

// Switches a global setting on while it lives.
class switched_on {
public:
    explicit switched_on(bool& setting)
        : m_setting(setting)
        , m_before(setting) {
        setting = true;
    }
    switched_on(switched_on const&) = delete; // one setting is restored once
    switched_on& operator=(switched_on const&) = delete;
    ~switched_on() { m_setting = m_before; }

private:
    bool& m_setting; // restored at the end
    bool m_before;   // its value until then
};

} // namespace vexor_test
