// Keeps:  both argument types are subtypes of the result. What depends on the value of a component (a
// subrange whose
//         bound is another component) cannot be joined one by one: it becomes its largest type.
// Ends:   every step goes to components or to the type behind a name or subtype.
// Cost:   linear in the pairs of components that meet; shared components are joined once.
// Source: own.
#include "ast/types/join_types.h"

#include "ast/node/ast_manager.h"
#include "ast/types/equivalent_types.h"
#include "base/deep_stack.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vexor {

namespace {

// 0 integers, 1 real, 2 number, -1 no numbers.
int number_rank(type* core) {
    if (is_a<int_type_name>(core) || is_a<nat_type_name>(core)) return 0;
    if (is_a<real_type_name>(core)) return 1;
    return is_a<number_type_name>(core) ? 2 : -1;
}

type* number_of_rank(ast_manager* m, int rank) {
    if (rank == 0) return m->create_int_type();
    return rank == 1 ? m->create_real_type() : m->create_number_type();
}

class type_joiner {
public:
    shared_ptr<type> join(type* a, type* b) {
        check_depth();
        if (a == b) return a;
        std::pair<type*, type*> key(a, b);
        if (shared_ptr<type>* known = m_joined.find(key)) return *known;
        shared_ptr<type> result = a->equals(b) ? shared_ptr<type>(a) : join_cores(core_type(a), core_type(b));
        m_joined.insert(key, result);
        return result;
    }

private:
    struct pair_hash {
        std::size_t operator()(std::pair<type*, type*> const& p) const {
            return reinterpret_cast<std::size_t>(p.first) * 31 + reinterpret_cast<std::size_t>(p.second);
        }
    };

    shared_ptr<type> join_cores(type* a, type* b) {
        int rank =
            std::min(number_rank(a), number_rank(b)) < 0 ? -1 : std::max(number_rank(a), number_rank(b));
        if (rank >= 0) return number_of_rank(a->get_manager(), rank);
        if (is_a<tuple_type>(a) && is_a<tuple_type>(b))
            return join_tuples(static_cast<tuple_type*>(a), static_cast<tuple_type*>(b));
        if (is_a<record_type>(a) && is_a<record_type>(b))
            return join_records(static_cast<record_type*>(a), static_cast<record_type*>(b));
        if (is_a<function_type>(a) && is_a<function_type>(b))
            return join_functions(static_cast<function_type*>(a), static_cast<function_type*>(b));
        return a;
    }

    // A component of the joined type: a's own where nothing changes.
    template <class D>
    shared_ptr<D> join_component(D* a, D* b) {
        shared_ptr<type> joined = join(a->get_type(), b->get_type());
        if (joined.get() == a->get_type()) return a;
        shared_ptr<D> result = static_cast<D*>(a->clone().get());
        result->set_type(joined);
        return result;
    }

    // Null if nothing changes.
    template <class D>
    bool join_components(child_array<D> const& a, child_array<D> const& b, shared_ptr_vector<D>& result) {
        bool changed = false;
        for (unsigned i = 0; i < a.size(); ++i) {
            result.push_back(join_component(a[i], b[i]).get());
            changed |= result.back() != a[i];
        }
        return changed;
    }

    // Does a component depend on another one?
    template <class D>
    static bool is_dependent(child_array<D> const& components) {
        return std::any_of(components.begin(), components.end(),
                           [](D* d) { return d->get_type()->has_free_vars(); });
    }

    // The same without subtypes, and with them without dependencies: integers stay integers.
    type* without_subtypes(type* t) {
        m_made.push_back(m_integral(t).get());
        return m_made.back();
    }

    shared_ptr<type> join_tuples(tuple_type* a, tuple_type* b) {
        if (a->size() != b->size()) return m_largest(a);
        if (is_dependent(a->get_elements()) || is_dependent(b->get_elements()))
            return join(without_subtypes(a), without_subtypes(b));
        shared_ptr_vector<var_decl> elements;
        if (!join_components(a->get_elements(), b->get_elements(), elements)) return a;
        return a->clone(elements.data(), elements.size());
    }

    shared_ptr<type> join_records(record_type* a, record_type* b) {
        if (a->size() != b->size()) return m_largest(a);
        for (unsigned i = 0; i < a->size(); ++i)
            if (!(a->get_field(i)->get_name() == b->get_field(i)->get_name())) return m_largest(a);
        if (is_dependent(a->get_fields()) || is_dependent(b->get_fields()))
            return join(without_subtypes(a), without_subtypes(b));
        shared_ptr_vector<field> fields;
        if (!join_components(a->get_fields(), b->get_fields(), fields)) return a;
        return a->clone(fields.data(), fields.size());
    }

    static bool has_equal_parameters(function_type* a, function_type* b) {
        for (unsigned i = 0; i < a->get_arity(); ++i)
            if (!a->get_param_type(i)->equals(b->get_param_type(i))) return false;
        return true;
    }

    // Parameters do not join: a function on the integers is none on the reals.
    shared_ptr<type> join_functions(function_type* a, function_type* b) {
        if (a->get_arity() != b->get_arity()) return m_largest(a);
        bool dependent = a->get_range()->has_free_vars() || b->get_range()->has_free_vars();
        if (dependent || !has_equal_parameters(a, b)) {
            a = static_cast<function_type*>(without_subtypes(a));
            b = static_cast<function_type*>(without_subtypes(b));
            if (!has_equal_parameters(a, b)) return m_largest(a);
        }
        shared_ptr<type> range = join(a->get_range(), b->get_range());
        if (range.get() == a->get_range()) return a;
        return a->clone(a->get_domain().data(), a->get_arity(), range);
    }

    supertype_visitor m_integral{true};
    shared_ptr_vector<type> m_made; // types that m_joined may name
    supertype_visitor m_largest{false};
    hash_map<std::pair<type*, type*>, shared_ptr<type>, pair_hash> m_joined; // pairs of components seen
};

} // namespace

shared_ptr<type> join_types(type* a, type* b) {
    if (a == b || a->equals(b)) return a;
    return on_deep_stack([&] { return type_joiner().join(a, b); });
}

} // namespace vexor
