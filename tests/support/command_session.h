// A context of its own, commands for it, and what they print.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

#include "ast/node/ast_manager.h"
#include "base/diagnostics.h"
#include "base/exceptions.h"
#include "frontend/command_interpreter.h"
#include "internalize/default_ast_internalization_visitor.h"
#include "search/context.h"

namespace vexor_test {

class command_session {
public:
    vexor::ast_manager m_manager;
    vexor::context m_context{&m_manager};

    command_session() {
        vexor::init_internalizer(m_context);
        vexor::build_predefined_functions(&m_context);
        vexor::set_parser_output_stream(&m_out);
    }
    command_session(command_session const&) = delete; // the output stream is process-wide
    command_session& operator=(command_session const&) = delete;
    ~command_session() {
        vexor::set_parser_output_stream(&std::cout);
        vexor::set_verbosity_level(0);
    }

    // What the commands print, with "!" and the message of the exception that ends them, if one does.
    std::string run(std::string const& text) {
        m_out.str("");
        std::string message;
        try {
            vexor::read_from_string(&m_context, text.c_str());
        } catch (vexor::vexor_exception const& e) {
            message = std::string("!") + e.what();
        }
        m_context.check_invariant();
        return m_out.str() + message;
    }
    // With the position left out.
    std::string run_core(std::string const& text) {
        std::string const all = run(text);
        std::size_t const bang = all.find("!["), end = all.find("]: ");
        return bang == std::string::npos ? all : all.substr(0, bang + 1) + all.substr(end + 3);
    }

private:
    std::ostringstream m_out;
};

// "!" and the message of an exception at offset pos of the first line of a text.
inline std::string failed_at(int pos, std::string const& message, std::string const& file = "<string>") {
    return "![" + file + ", line(1), column(" + std::to_string(pos + 1) + "), position(" +
           std::to_string(pos) + ")]: " + message;
}

inline std::string const dead_context = "Logical context is inconsistent. Use (reset) to reset.\n";
inline std::string const dead_scope =
    "Logical context is inconsistent. Use (pop) to restore the previous state.\n";

} // namespace vexor_test
