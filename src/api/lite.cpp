// The lite interface: a shell around the command interpreter, and the place where exceptions become results.
#include "api/vexor_lite.h"

#include "api/busy_guard.h"
#include "api/misuse.h"
#include "api/version.h"
#include "ast/node/ast_manager.h"
#include "ast/node/settings.h"
#include "base/diagnostics.h"
#include "base/exceptions.h"
#include "frontend/command_interpreter.h"
#include "internalize/default_ast_internalization_visitor.h"
#include "search/context.h"

#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace vexor {

namespace {

// The log stays open to the end of the process and is complete after each command.
std::unique_ptr<std::ofstream> g_llog;
std::string g_last_error_msg;

// Null ends the process in the name of the exported function.
context* to_context(vexorl_context ctx, char const* function = __builtin_FUNCTION()) {
    if (ctx == nullptr) misuse(function, "the context is null");
    return static_cast<context*>(ctx);
}

char const* to_text(char const* text, char const* what, char const* function = __builtin_FUNCTION()) {
    if (text == nullptr) misuse(function, what);
    return text;
}

} // namespace

} // namespace vexor

using namespace vexor;

extern "C" {

void vexorl_set_verbosity(int level) { set_verbosity_level(level < 0 ? 0 : level); }

const char* vexorl_version(void) { return version_text; }

void vexorl_enable_type_checker(int flag) { g_type_check = flag != 0; }

vexorl_context vexorl_mk_context(void) {
    auto manager = std::make_unique<ast_manager>();
    auto ctx = std::make_unique<context>(manager.get());
    init_internalizer(*ctx);
    build_predefined_functions(ctx.get());
    static_cast<void>(manager.release());
    return ctx.release();
}

// The context goes first: its variables hold declarations of the manager.
void vexorl_del_context(vexorl_context ctx) {
    context* const c = to_context(ctx);
    ast_manager* const manager = c->get_manager();
    delete c;
    delete manager;
}

int vexorl_inconsistent(vexorl_context ctx) { return to_context(ctx)->inconsistent() ? 1 : 0; }

int vexorl_read(vexorl_context ctx, const char* text) {
    busy_guard const guard(__func__);
    context* const c = to_context(ctx);
    static_cast<void>(to_text(text, "the text is null"));
    if (g_llog) *g_llog << text << "\n" << std::flush;
    try {
        read_from_string(c, text);
        return 1;
    } catch (vexor_exception const& error) {
        g_last_error_msg = error.what();
        return 0;
    }
}

void vexorl_set_output_file(const char* file_name) {
    static_cast<void>(to_text(file_name, "the file name is null"));
    // Never destroyed: a caller's stream order at the end of the process is not ours to know.
    static auto* const streams = new std::vector<std::unique_ptr<std::ofstream>>;
    streams->push_back(std::make_unique<std::ofstream>(file_name));
    set_parser_output_stream(streams->back().get());
}

const char* vexorl_get_last_error_message(void) { return g_last_error_msg.c_str(); }

void vexorl_enable_log_file(const char* file_name) {
    static_cast<void>(to_text(file_name, "the file name is null"));
    if (!g_llog) g_llog = std::make_unique<std::ofstream>(file_name);
}

} // extern "C"
