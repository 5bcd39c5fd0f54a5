// Puts the settings of the search back at the end of a test.
#pragma once

#include "base/debug.h"
#include "search/search_settings.h"

namespace vexor_test {

class search_settings_guard {
public:
    search_settings_guard() = default;
    search_settings_guard(search_settings_guard const&) = delete;
    search_settings_guard& operator=(search_settings_guard const&) = delete;
    ~search_settings_guard() {
        vexor::g_decision_polarity = m_polarity;
        vexor::g_delete_irrelevant_learned_clauses = m_delete;
        vexor::g_clause_deletion_frequency = m_frequency;
        vexor::g_head_activity = m_head_activity;
        vexor::g_tail_activity = m_tail_activity;
        vexor::g_head_relevancy = m_head_relevancy;
        vexor::g_tail_relevancy = m_tail_relevancy;
        vexor::g_head_tail_ratio = m_ratio;
        vexor::g_build_model = m_build_model;
        vexor::g_restart_limit = m_restart_limit;
        vexor::g_simplify_always = m_simplify_always;
        vexor::g_debug_level = m_debug_level;
    }

private:
    int m_polarity = vexor::g_decision_polarity;
    bool m_delete = vexor::g_delete_irrelevant_learned_clauses;
    unsigned m_frequency = vexor::g_clause_deletion_frequency;
    unsigned m_head_activity = vexor::g_head_activity;
    unsigned m_tail_activity = vexor::g_tail_activity;
    unsigned m_head_relevancy = vexor::g_head_relevancy;
    unsigned m_tail_relevancy = vexor::g_tail_relevancy;
    unsigned m_ratio = vexor::g_head_tail_ratio;
    bool m_build_model = vexor::g_build_model;
    unsigned m_restart_limit = vexor::g_restart_limit;
    bool m_simplify_always = vexor::g_simplify_always;
    int m_debug_level = vexor::g_debug_level;
};

} // namespace vexor_test
