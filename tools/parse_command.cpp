#include "parse_command.h"

#include <iostream>

#include "ast/node/ast_manager.h"
#include "ast/node/settings.h"
#include "frontend/native_reader.h"
#include "frontend/parser.h"
#include "input.h"

namespace vexor_tool {

int run_parse(options const& opts, std::string const& file) {
    input source(file);
    vexor::ast_manager manager;
    vexor::native_contents contents;
    vexor::g_type_check = opts.m_type_check;
    // Only messages of the type checker name the places of nodes.
    vexor::parser::m_sharing = !opts.m_type_check;
    vexor::read_native(&manager, source.stream(), source.name().c_str(), contents);
    if (opts.m_print_terms != print_terms::none) {
        bool dag = opts.m_print_terms == print_terms::dag;
        vexor::print_native(std::cout, contents, dag ? vexor::print_mode::dag : vexor::print_mode::tree);
    }
    if (opts.m_stats) {
        std::cout << "; commands: " << contents.size() << "\n"
                  << "; nodes: " << manager.num_live_nodes() << "\n"
                  << "; node bytes: " << manager.node_bytes() << "\n";
    }
    return 0;
}

} // namespace vexor_tool
