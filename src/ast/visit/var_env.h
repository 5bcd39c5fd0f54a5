// An environment of bound variables that knows what a result depended on.
//
// Visitors that go below binders keep the value of each variable here, and remember results for shared nodes.
// A result for a node holds as long as the bindings of the node's free variables do. Dropping it with the
// scope in which it was made would cost exponential time on terms that share a subterm between binders; so
// the environment notes, while a result is computed, the innermost scope that a variable was found in, and
// the result stays valid until that scope ends.
//
// Keeps:   a mark taken after lookups is valid iff each of those lookups would still give the same answer.
//          A scope instance has a stamp of its own; binding a variable again that a lookup has seen
//          (shadowed, or unbound before) is rare and invalidates all marks by a new epoch.
// Cost:    O(1) per operation, O(bindings of the scope) to end a scope.
// Source:  own.
#pragma once

#include "ast/node/decl.h"
#include "ast/visit/level_set.h"
#include "base/hash_table.h"
#include "base/vector.h"

#include <cstdint>

namespace vexor {

template <class Value>
class binding_env {
public:
    // Until when a result is valid.
    struct mark {
        level_set m_levels;        // the scopes it depends on
        std::uint64_t m_stamp = 0; // instance of the innermost of them
        std::uint64_t m_epoch = 0; // see above
    };

    binding_env() { m_scopes.push_back({0, 0}); }

    unsigned level() const { return static_cast<unsigned>(m_scopes.size()) - 1; }
    void begin_scope() { m_scopes.push_back({m_trail.size(), ++m_last_stamp}); }
    void end_scope() {
        VEXOR_ASSERT(level() > 0);
        unsigned size = m_scopes.back().m_trail_size;
        while (m_trail.size() > size) undo_binding();
        m_scopes.pop_back();
        m_dependencies.cut(level());
    }

    // Binds in the current scope, shadowing what was there. capturable: the value has variables that a binder
    // below could bind by mistake.
    void bind(var_decl* d, Value const& value, bool capturable = true) {
        binding* old = m_bindings.find(d);
        if (old != nullptr || m_seen_unbound.contains(d)) ++m_epoch;
        m_trail.push_back({d, old == nullptr ? binding{} : *old, old != nullptr});
        if (old != nullptr && old->m_capturable) --m_num_capturable;
        m_bindings.insert(d, binding{value, level(), capturable});
        if (capturable) ++m_num_capturable;
    }
    // The number of visible bindings that are capturable.
    unsigned num_capturable() const { return m_num_capturable; }
    // The value, null for an unbound variable. Notes the dependency.
    Value const* find(var_decl* d) {
        binding const* b = m_bindings.find(d);
        if (b == nullptr) {
            m_seen_unbound.insert(d);
            return nullptr;
        }
        depend_on(b->m_level);
        return &b->m_value;
    }
    // The value without a note, for questions that no remembered result rests on.
    Value const* peek(var_decl* d) const {
        binding const* b = m_bindings.find(d);
        return b == nullptr ? nullptr : &b->m_value;
    }
    bool empty() const { return m_bindings.empty(); }
    template <class F>
    void for_each(F f) const {
        for (auto const& e : m_bindings) f(e.m_key, e.m_value.m_value);
    }

    // What is being computed depends on something that lives as long as the scope of this level.
    void depend_on(unsigned level) { m_dependencies.insert(level); }
    void depend_on(mark const& m) { m_dependencies.insert(m.m_levels); }
    // The innermost level that was depended on since the frame was opened.
    unsigned dependency() const { return m_dependencies.max(); }
    mark dependency_mark() const { return {m_dependencies, m_scopes[dependency()].m_stamp, m_epoch}; }
    bool is_valid(mark const& m) const {
        unsigned innermost = m.m_levels.max();
        return m.m_epoch == m_epoch && innermost < m_scopes.size() &&
               m_scopes[innermost].m_stamp == m.m_stamp;
    }

    // Collects the dependencies of one result, made under the scopes that are open when the frame is opened;
    // when it closes they count for the result around it.
    class frame {
    public:
        explicit frame(binding_env& env)
            : m_env(env)
            , m_outer(env.m_dependencies) {
            env.m_dependencies = {};
        }
        frame(frame const&) = delete;
        frame& operator=(frame const&) = delete;
        ~frame() { m_env.m_dependencies.insert(m_outer); }

    private:
        binding_env& m_env;
        level_set m_outer; // dependencies of the result around this one so far
    };

    // Ends all scopes and forgets all bindings. Marks taken before are invalid.
    void reset() {
        m_bindings.reset();
        m_seen_unbound.reset();
        m_trail.reset();
        m_scopes.reset();
        m_scopes.push_back({0, ++m_last_stamp});
        m_dependencies = {};
        m_num_capturable = 0;
        ++m_epoch;
    }

private:
    struct binding {
        Value m_value{};
        unsigned m_level = 0;      // scope it was made in
        bool m_capturable = false; // see bind
    };
    struct undo_record {
        var_decl* m_decl;
        binding m_old; // what it shadowed, if anything
        bool m_had_old;
    };
    struct scope {
        unsigned m_trail_size; // length of m_trail when it began
        std::uint64_t m_stamp; // of this instance
    };

    void undo_binding() {
        undo_record& r = m_trail.back();
        if (m_bindings.find(r.m_decl)->m_capturable) --m_num_capturable;
        if (r.m_had_old) {
            m_bindings.insert(r.m_decl, r.m_old);
            if (r.m_old.m_capturable) ++m_num_capturable;
        } else
            m_bindings.erase(r.m_decl);
        m_trail.pop_back();
    }

    hash_map<var_decl*, binding, fast_ptr_hash<var_decl>> m_bindings; // visible bindings
    hash_set<var_decl*, fast_ptr_hash<var_decl>> m_seen_unbound;      // looked up in vain since reset
    vector<undo_record> m_trail;    // bindings of all open scopes, oldest first
    svector<scope> m_scopes;        // open scopes, the outermost is never closed
    std::uint64_t m_last_stamp = 0; // stamp of the newest scope
    std::uint64_t m_epoch = 0;      // see above
    unsigned m_num_capturable = 0;  // see num_capturable
    level_set m_dependencies;       // see dependency
};

// The environment of map_visitor: what each variable is replaced by.
using var_env = binding_env<shared_ptr<ast>>;

} // namespace vexor
