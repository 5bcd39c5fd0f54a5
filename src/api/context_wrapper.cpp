#include "api/context_wrapper.h"

#include "frontend/user_scopes.h"
#include "internalize/default_ast_internalization_visitor.h"

#include <memory>

namespace vexor {

context_wrapper::context_wrapper() {
    auto manager = std::make_unique<ast_manager>();
    auto ctx = std::make_unique<context>(manager.get());
    init_internalizer(*ctx);
    static_cast<void>(manager.release());
    m_context = ctx.release();
}

// The manager goes last: nodes tell it when they die.
context_wrapper::~context_wrapper() {
    ast_manager* const manager = get_manager();
    delete m_context;
    release_objects(0);
    delete manager;
}

void context_wrapper::push() {
    push_user_scope(*m_context);
    m_object_lims.push_back(m_objects.size());
}

// The scope of the manager is closed behind the handles, which hold its declarations.
void context_wrapper::pop() {
    unsigned const size = m_object_lims.back();
    m_object_lims.pop_back();
    pop_user_scopes(*m_context, 1);
    release_objects(size);
}

void context_wrapper::reset() {
    m_context->reset();
    m_next_fresh_id = 1;
    m_object_lims.reset();
    release_objects(0);
    get_manager()->reset();
}

void context_wrapper::release_objects(unsigned size) {
    while (m_objects.size() > size) {
        note_handle_dead(m_objects.back());
        m_objects.pop_back();
    }
}

} // namespace vexor
