// What the tests of the full interface share.
#pragma once

#define VEXOR_WITH_GMP
#include "api/context_wrapper.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace vexor_test {

// A context of the interface for the length of a block.
class api_context {
public:
    api_context()
        : m_handle(vexor_mk_context()) {}
    api_context(api_context const&) = delete; // owns the context
    api_context& operator=(api_context const&) = delete;
    ~api_context() { vexor_del_context(m_handle); }

    operator vexor_context() const { return m_handle; }
    [[nodiscard]] vexor::context& inner() const { return vexor::to_context(m_handle); }
    [[nodiscard]] vexor::ast_manager* manager() const { return inner().get_manager(); }

    vexor_expr var(std::string const& name) const { return vexor_mk_bool_var(m_handle, name.c_str()); }
    vexor_expr constant(std::string const& name, vexor_type t) const {
        return vexor_mk_var_from_decl(m_handle, vexor_mk_var_decl(m_handle, name.c_str(), t));
    }
    vexor_expr or_of(std::vector<vexor_expr> const& args) const {
        return vexor_mk_or(m_handle, args.data(), static_cast<unsigned>(args.size()));
    }
    vexor_expr and_of(std::vector<vexor_expr> const& args) const {
        return vexor_mk_and(m_handle, args.data(), static_cast<unsigned>(args.size()));
    }
    vexor_expr not_of(vexor_expr e) const { return vexor_mk_not(m_handle, e); }
    lbool value(vexor_expr name) const {
        return vexor_get_value(vexor_get_model(m_handle), vexor_get_var_decl(name));
    }
    std::vector<assertion_id> core() const {
        std::vector<assertion_id> ids(vexor_get_unsat_core(m_handle, nullptr, 0));
        vexor_get_unsat_core(m_handle, ids.data(), static_cast<unsigned>(ids.size()));
        return ids;
    }
    // num_holes + 1 pigeons, two of which share a hole: unsatisfiable, with many conflicts.
    void assert_pigeons(unsigned num_holes) const;

private:
    vexor_context m_handle;
};

inline vexor::expr* node(vexor_expr e) { return vexor::to_expr(e); }

inline void api_context::assert_pigeons(unsigned num_holes) const {
    auto in = [&](unsigned pigeon, unsigned hole) {
        return var("pigeon" + std::to_string(pigeon) + "in" + std::to_string(hole));
    };
    for (unsigned p = 0; p <= num_holes; ++p) {
        std::vector<vexor_expr> places;
        for (unsigned h = 0; h < num_holes; ++h) places.push_back(in(p, h));
        vexor_assert(m_handle, or_of(places));
        for (unsigned other = 0; other < p; ++other)
            for (unsigned h = 0; h < num_holes; ++h)
                vexor_assert(m_handle, or_of({not_of(in(p, h)), not_of(in(other, h))}));
    }
}

} // namespace vexor_test
