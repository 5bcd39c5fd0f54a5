#include "native_command.h"

#include <iostream>
#include <optional>
#include <string>
#include <unistd.h>

#include "ast/node/ast_manager.h"
#include "ast/node/settings.h"
#include "base/exceptions.h"
#include "frontend/command_interpreter.h"
#include "input.h"
#include "internalize/default_ast_internalization_visitor.h"
#include "line_editor.h"
#include "progress.h"
#include "search/context.h"
#include "search/search_settings.h"
#include "session_text.h"
#include "stop_request.h"

namespace vexor_tool {

namespace {

class native_run {
public:
    explicit native_run(options const& opts)
        : m_context(&m_manager)
        , m_watch(std::in_place, opts.m_timeout_seconds) {
        vexor::init_internalizer(m_context);
        vexor::build_predefined_functions(&m_context);
        m_context.set_evidence(opts.m_evidence);
        vexor::g_type_check = opts.m_type_check;
        // An assertion leaves many variables that no conflict touches: kept values save deciding them anew.
        vexor::g_decision_polarity = opts.m_phase >= 0 ? opts.m_phase : vexor::saved_polarity;
        if (!opts.m_quiet) show_progress(m_context);
        m_watch->set_context(&m_context);
    }
    ~native_run() { m_watch->set_context(nullptr); }

    int run_file(std::string const& file) {
        input source(file);
        vexor::read(&m_context, source.stream(), source.name().c_str());
        return 0;
    }

    // Commands are executed as soon as their parentheses are closed; one that fails ends nothing. A signal
    // ends the command that runs, and the session.
    int run_session() {
        line_editor editor;
        session_text pending;
        std::string line;
        while (editor.read_line(pending.empty() ? "vexor> " : "  ...> ", line)) {
            pending.append(line);
            if (pending.is_open()) continue;
            execute(pending.take());
            if (stop_requested() != stop_reason::none) break;
        }
        // The input may end in the midst of a command; the reader tells what is missing.
        bool const complete = pending.empty() || execute(pending.take());
        std::cout << "\n";
        return complete ? 0 : 1;
    }

    void print_statistics() { m_context.get_statistics().display(std::cout, "; "); }

private:
    // False after an error, which was told.
    bool execute(std::string const& text) {
        bool done = false;
        try {
            vexor::read_from_string(&m_context, text.c_str());
            done = true;
        } catch (vexor::vexor_exception const& error) {
            std::cerr << error.what() << "\n";
        }
        std::cout.flush();
        return done;
    }

    vexor::ast_manager m_manager;
    vexor::context m_context;
    std::optional<stop_watch> m_watch; // ends before the context
};

} // namespace

int run_native(options const& opts, std::string const& file) {
    native_run work(opts);
    int const code = file == "-" && isatty(STDIN_FILENO) != 0 ? work.run_session() : work.run_file(file);
    if (opts.m_stats) work.print_statistics();
    return code;
}

} // namespace vexor_tool
