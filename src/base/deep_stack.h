// One stack for all recursion over input: as deep as memory, with an exception instead of a crash at its end.
//
// Formulas nest as deep as their author likes, and threads of the caller may have small stacks. Recursive
// work is entered through on_deep_stack, and each recursive function calls check_depth on entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "base/exceptions.h"

namespace vexor {

class nesting_too_deep_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

namespace deep_stack_detail {

// Below this address check_depth looks closer; 0 means that the deep stack is not in use on this thread. The
// model makes an access one instruction in the shared library, too.
extern constinit thread_local std::uintptr_t t_soft_limit __attribute__((tls_model("initial-exec")));

// Notes how deep the stack is used, or throws when it is used up.
void below_soft_limit(std::uintptr_t position);

// Calls function(argument) on the deep stack of this thread. An exception of the function is thrown again
// here.
void run(void (*function)(void*), void* argument);

} // namespace deep_stack_detail

// Throws nesting_too_deep_exception when the deep stack is nearly used up. One compare; no effect outside of
// on_deep_stack.
inline void check_depth() {
    auto position = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    if (position < deep_stack_detail::t_soft_limit) deep_stack_detail::below_soft_limit(position);
}

[[nodiscard]] inline bool is_on_deep_stack() { return deep_stack_detail::t_soft_limit != 0; }

// Calls f() on this thread's deep stack and returns its result; exceptions come across. Nested calls run
// directly.
template <class F>
decltype(auto) on_deep_stack(F&& f) {
    using result = std::invoke_result_t<F>;
    if (is_on_deep_stack()) return std::forward<F>(f)();
    using callable = std::remove_reference_t<F>;
    if constexpr (std::is_void_v<result>) {
        deep_stack_detail::run([](void* argument) { std::forward<F> (*static_cast<callable*>(argument))(); },
                               const_cast<void*>(static_cast<void const*>(std::addressof(f))));
    } else if constexpr (std::is_reference_v<result>) {
        struct frame {
            callable* m_f;
            std::remove_reference_t<result>* m_result;
        } call{std::addressof(f), nullptr};
        deep_stack_detail::run(
            [](void* argument) {
                auto* c = static_cast<frame*>(argument);
                decltype(auto) r = std::forward<F>(*c->m_f)();
                c->m_result = std::addressof(r);
            },
            &call);
        return static_cast<result>(*call.m_result);
    } else {
        struct frame {
            callable* m_f;
            std::optional<std::remove_cv_t<result>> m_result;
        } call{std::addressof(f), std::nullopt};
        deep_stack_detail::run(
            [](void* argument) {
                auto* c = static_cast<frame*>(argument);
                c->m_result.emplace(std::forward<F>(*c->m_f)());
            },
            &call);
        return static_cast<result>(std::move(*call.m_result));
    }
}

// While it lives, check_depth throws when half of what was left of the deep stack is used up: what runs
// afterwards has twice the room. Work that must not fail goes behind work of the same depth that may. It must
// be made on the deep stack, and no call of on_deep_stack may end before it.
class depth_reserve {
public:
    depth_reserve();
    depth_reserve(depth_reserve const&) = delete; // stands for a stretch of time
    depth_reserve& operator=(depth_reserve const&) = delete;
    ~depth_reserve();

private:
    std::uintptr_t m_hard_limit; // to be restored
    std::uintptr_t m_soft_limit; // the same
};

// An upper bound, in bytes, on the deep stacks of all threads; a running call keeps its own. 0 restores the
// default, which is 8 GB, less where the machine's memory or the limit on the address space is small.
void set_deep_stack_size(std::size_t bytes);

} // namespace vexor
