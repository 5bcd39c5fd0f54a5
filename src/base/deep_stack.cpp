// The deep stack: one mapping per thread, reserved in virtual memory and filled by use alone.
//
// Keeps:   t_soft_limit is 0 outside of a call; inside, no page below it has been used by a function that
// called
//          check_depth, and it is never below the hard limit, behind which there is room for functions that
//          do not check (the C library, the unwinder) and then a guard.
// Cost:    a call switches one register; check_depth is a compare, with a slow path each time the depth
// doubles. Source:  own.
#include "base/deep_stack.h"

#include <algorithm>
#include <cxxabi.h>
#include <exception>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/debug.h"

#if defined(__SANITIZE_ADDRESS__)
#define VEXOR_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEXOR_ASAN 1
#endif
#endif
#ifdef VEXOR_ASAN
#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>
#include <sanitizer/lsan_interface.h>
#endif

// void vexor_call_on_stack(void* top, void (*function)(void*), void* argument): calls the function with the
// stack pointer at top. The frame pointer remembers the caller's stack, and the unwind tables say so:
// debuggers and a cancelled thread find the way back.
#if defined(__x86_64__)
extern "C" void vexor_call_on_stack(void* top, void (*function)(void*), void* argument)
    __attribute__((visibility("hidden")));
asm(R"(
    .text
    .p2align 4
    .globl vexor_call_on_stack
    .hidden vexor_call_on_stack
    .type vexor_call_on_stack, @function
vexor_call_on_stack:
    .cfi_startproc
    pushq %rbp
    .cfi_def_cfa_offset 16
    .cfi_offset %rbp, -16
    movq %rsp, %rbp
    .cfi_def_cfa_register %rbp
    movq %rdi, %rsp
    movq %rdx, %rdi
    callq *%rsi
    movq %rbp, %rsp
    popq %rbp
    .cfi_def_cfa %rsp, 8
    retq
    .cfi_endproc
    .size vexor_call_on_stack, .-vexor_call_on_stack
)");
#elif defined(__aarch64__)
extern "C" void vexor_call_on_stack(void* top, void (*function)(void*), void* argument)
    __attribute__((visibility("hidden")));
asm(R"(
    .text
    .p2align 4
    .globl vexor_call_on_stack
    .hidden vexor_call_on_stack
    .type vexor_call_on_stack, %function
vexor_call_on_stack:
    .cfi_startproc
    stp x29, x30, [sp, #-16]!
    .cfi_def_cfa_offset 16
    .cfi_offset x29, -16
    .cfi_offset x30, -8
    mov x29, sp
    .cfi_def_cfa_register x29
    mov sp, x0
    mov x0, x2
    blr x1
    mov sp, x29
    .cfi_def_cfa_register sp
    ldp x29, x30, [sp], #16
    .cfi_restore x29
    .cfi_restore x30
    .cfi_def_cfa_offset 0
    ret
    .cfi_endproc
    .size vexor_call_on_stack, .-vexor_call_on_stack
)");
#else
#include <ucontext.h>
namespace {
struct switch_call {
    void (*m_function)(void*);
    void* m_argument;
};
thread_local switch_call t_switch_call;
void enter_switch_call() { t_switch_call.m_function(t_switch_call.m_argument); }
void vexor_call_on_stack(void* top, void (*function)(void*), void* argument) {
    // makecontext wants the low end and the size; the size given here is enough to place the first frame.
    constexpr std::size_t first_frame = 64 * 1024;
    ucontext_t here;
    ucontext_t there;
    getcontext(&there);
    there.uc_stack.ss_sp = static_cast<char*>(top) - first_frame;
    there.uc_stack.ss_size = first_frame;
    there.uc_link = &here;
    t_switch_call = {function, argument};
    makecontext(&there, enter_switch_call, 0);
    swapcontext(&here, &there);
}
} // namespace
#endif

namespace vexor {

char const* nesting_too_deep_exception::what() const noexcept { return "input is nested too deeply"; }

namespace deep_stack_detail {

constinit thread_local std::uintptr_t t_soft_limit __attribute__((tls_model("initial-exec"))) = 0;

namespace {

constexpr std::size_t mega_byte = std::size_t{1} << 20;
constexpr std::size_t largest_size = 8192 * mega_byte;
constexpr std::size_t smallest_size = 16 * mega_byte; // with less, the caller's stack is the better one
constexpr std::size_t guard_size = mega_byte / 16;
constexpr std::size_t reserve = mega_byte / 4; // for functions that do not check, below the hard limit
constexpr std::size_t kept_size = mega_byte;   // stays in memory between calls

std::size_t g_size_bound = 0; // set by set_deep_stack_size, 0 for none

// This thread's stack. It has no destructor, so that code in destructors of static objects may still use it.
struct thread_stack {
    char* m_low;                 // low end of the mapping, null when there is none
    std::size_t m_size;          // bytes of the mapping
    std::size_t m_wanted;        // the size that was asked for when it was made
    std::uintptr_t m_hard_limit; // check_depth throws below; valid during a call
    bool m_failed;               // there is no memory for a mapping: calls run on the caller's stack
};
constinit thread_local thread_stack t_stack{};

void unmap() {
    if (t_stack.m_low) munmap(t_stack.m_low, t_stack.m_size);
    t_stack = thread_stack{};
}

// Gives the mapping back when the thread ends, unless this runs on it: exit may be called from deep inside.
struct thread_exit {
    ~thread_exit() {
        if (t_soft_limit == 0) unmap();
    }
    bool m_armed = false;
};
thread_local thread_exit t_exit;

std::size_t wanted_size() {
    std::size_t size = largest_size;
    // Endless recursion must end in an exception before it takes the machine's memory.
    long pages = sysconf(_SC_PHYS_PAGES);
    long page_size = sysconf(_SC_PAGESIZE);
    if (pages > 0 && page_size > 0)
        size = std::min(size, static_cast<std::size_t>(pages) * static_cast<std::size_t>(page_size) / 2);
    // A limited address space is needed for the heap first of all.
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY)
        size = std::min<std::size_t>(size, limit.rlim_cur / 4);
    if (g_size_bound != 0) size = std::min(size, g_size_bound);
    return size & ~(guard_size - 1);
}

// True when the thread has a mapping.
bool make_mapping() {
    std::size_t wanted = g_size_bound;
    if (t_stack.m_wanted == wanted && (t_stack.m_low || t_stack.m_failed)) return t_stack.m_low != nullptr;
    unmap();
    t_stack.m_wanted = wanted;
    for (std::size_t size = wanted_size(); size >= std::min(smallest_size, wanted ? wanted : smallest_size);
         size = (size / 2) & ~(guard_size - 1)) {
        if (size < 2 * (guard_size + reserve)) break;
        void* low = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                         MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_STACK, -1, 0);
        if (low == MAP_FAILED) continue;
        mprotect(low, guard_size, PROT_NONE);
        t_stack.m_low = static_cast<char*>(low);
        t_stack.m_size = size;
        t_exit.m_armed = true; // touches the object, which makes its destructor run
        return true;
    }
    t_stack.m_failed = true;
    return false;
}

struct stack_call {
    void (*m_function)(void*);
    void* m_argument;
    std::exception_ptr m_exception; // what the function threw
#ifdef VEXOR_ASAN
    void const* m_caller_low = nullptr;
    std::size_t m_caller_size = 0;
#endif
};

// First function on the deep stack.
void trampoline(void* argument) {
    auto* call = static_cast<stack_call*>(argument);
#ifdef VEXOR_ASAN
    __sanitizer_finish_switch_fiber(nullptr, &call->m_caller_low, &call->m_caller_size);
    // If the process ends from here, what the caller's stack points to is no leak.
    __lsan_register_root_region(call->m_caller_low, call->m_caller_size);
#endif
    try {
        call->m_function(call->m_argument);
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled: it unwinds through the switch
    } catch (...) {
        call->m_exception = std::current_exception();
    }
#ifdef VEXOR_ASAN
    __lsan_unregister_root_region(call->m_caller_low, call->m_caller_size);
    __sanitizer_start_switch_fiber(nullptr, call->m_caller_low, call->m_caller_size);
#endif
}

// Marks the deep stack as used, and undoes it on every way out.
class in_use {
public:
    in_use(std::uintptr_t soft_limit, std::uintptr_t hard_limit)
        : m_first_limit(soft_limit) {
        t_stack.m_hard_limit = hard_limit;
        t_soft_limit = soft_limit;
    }
    in_use(in_use const&) = delete; // stands for one stretch of time
    in_use& operator=(in_use const&) = delete;
    ~in_use() { t_soft_limit = 0; }
    [[nodiscard]] bool went_deeper() const { return t_soft_limit != m_first_limit; }

private:
    std::uintptr_t m_first_limit; // soft limit at the start of the call
};

void run_on_mapping(stack_call& call) {
    char* top = t_stack.m_low + t_stack.m_size;
    std::size_t kept = std::min(kept_size, t_stack.m_size / 2);
    auto hard_limit = reinterpret_cast<std::uintptr_t>(t_stack.m_low) + guard_size + reserve;
    in_use mark(std::max(reinterpret_cast<std::uintptr_t>(top) - kept, hard_limit), hard_limit);
#ifdef VEXOR_ASAN
    void* fake_stack = nullptr;
    __sanitizer_start_switch_fiber(&fake_stack, t_stack.m_low, t_stack.m_size);
#endif
    vexor_call_on_stack(top, trampoline, &call);
#ifdef VEXOR_ASAN
    __sanitizer_finish_switch_fiber(fake_stack, nullptr, nullptr);
    // After an exception from far below, the sanitizer may leave marks of frames that are gone.
    if (mark.went_deeper()) {
        char* low = reinterpret_cast<char*>(t_soft_limit - reserve);
        ASAN_UNPOISON_MEMORY_REGION(low, static_cast<std::size_t>(top - low));
    }
#endif
    if (mark.went_deeper())
        madvise(t_stack.m_low + guard_size, t_stack.m_size - guard_size - kept, MADV_DONTNEED);
}

// The last resort: no room for a stack of our own.
void run_on_caller_stack(stack_call& call) {
    auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    std::uintptr_t limit = here > reserve ? here - reserve : 1;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        void* low = nullptr;
        std::size_t size = 0;
        if (pthread_attr_getstack(&attributes, &low, &size) == 0)
            limit = reinterpret_cast<std::uintptr_t>(low) + std::min(reserve, size / 2);
        pthread_attr_destroy(&attributes);
    }
    in_use mark(limit, limit);
    call.m_function(call.m_argument);
}

} // namespace

void below_soft_limit(std::uintptr_t position) {
    std::uintptr_t hard_limit = t_stack.m_hard_limit;
    if (position < hard_limit) throw nesting_too_deep_exception();
    auto top = reinterpret_cast<std::uintptr_t>(t_stack.m_low) + t_stack.m_size;
    std::size_t room = 2 * (top - position);
    t_soft_limit = room < top - hard_limit ? top - room : hard_limit;
}

void run(void (*function)(void*), void* argument) {
    VEXOR_ASSERT(t_soft_limit == 0);
    stack_call call{function, argument, nullptr};
    if (!make_mapping()) {
        run_on_caller_stack(call);
        return;
    }
    run_on_mapping(call);
    if (call.m_exception) std::rethrow_exception(std::move(call.m_exception));
}

} // namespace deep_stack_detail

depth_reserve::depth_reserve()
    : m_hard_limit(deep_stack_detail::t_stack.m_hard_limit)
    , m_soft_limit(deep_stack_detail::t_soft_limit) {
    VEXOR_ASSERT(is_on_deep_stack());
    auto const here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    if (here <= m_hard_limit) return;
    std::uintptr_t const limit = m_hard_limit + (here - m_hard_limit) / 2;
    deep_stack_detail::t_stack.m_hard_limit = limit;
    deep_stack_detail::t_soft_limit = std::max(m_soft_limit, limit);
}

// The soft limit also tells how much of the stack was touched.
depth_reserve::~depth_reserve() {
    deep_stack_detail::t_stack.m_hard_limit = m_hard_limit;
    deep_stack_detail::t_soft_limit = std::min(m_soft_limit, deep_stack_detail::t_soft_limit);
}

void set_deep_stack_size(std::size_t bytes) { deep_stack_detail::g_size_bound = bytes; }

} // namespace vexor
