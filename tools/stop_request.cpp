#include "stop_request.h"

#include <atomic>
#include <csignal>
#include <ctime>

#include "search/context.h"

// Everything happens in signal handlers on the one thread of the process: no thread has to be started, which
// could fail when memory is scarce, and read() is interrupted by the same means as the search. The timer's
// signal is not SIGALRM, which the library uses itself.

namespace vexor_tool {

namespace {

constexpr long tick_nanoseconds = 20'000'000;
constexpr double nanoseconds_per_second = 1e9;

std::atomic<vexor::context*> g_context{nullptr};
std::atomic<stop_reason> g_reason{stop_reason::none};
std::atomic<bool> g_has_deadline{false};
std::atomic<bool> g_signalled{false};
std::atomic<double> g_deadline{0}; // on the monotonic clock, in seconds
timer_t g_timer;
std::atomic<bool> g_has_timer{false};

static_assert(std::atomic<vexor::context*>::is_always_lock_free && std::atomic<double>::is_always_lock_free,
              "signal handlers must not wait");

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / nanoseconds_per_second;
}

void set_ticking(bool on) {
    if (!g_has_timer) return;
    itimerspec period{};
    if (on) period.it_value.tv_nsec = period.it_interval.tv_nsec = tick_nanoseconds;
    timer_settime(g_timer, 0, &period, nullptr);
}

void look_at_requests() {
    if (g_signalled) {
        g_reason = stop_reason::signal;
    } else if (g_has_deadline && now() >= g_deadline) {
        g_reason = stop_reason::timeout;
    }
    if (g_reason == stop_reason::none) return;
    if (vexor::context* ctx = g_context) ctx->stop_the_search();
}

void on_tick(int) { look_at_requests(); }

void on_stop_signal(int) {
    g_signalled = true;
    look_at_requests();
    set_ticking(true);
}

void handle(int signal_number, void (*handler)(int), int flags) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(signal_number, &action, nullptr);
}

void create_timer() {
    if (g_has_timer) return;
    // Without SA_RESTART a tick also ends a read() that waits for input.
    handle(SIGRTMIN, on_tick, 0);
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGRTMIN;
    g_has_timer = timer_create(CLOCK_MONOTONIC, &event, &g_timer) == 0;
}

} // namespace

void catch_stop_signals() {
    create_timer();
    handle(SIGINT, on_stop_signal, SA_RESETHAND);
    handle(SIGTERM, on_stop_signal, SA_RESETHAND);
}

stop_reason stop_requested() { return g_reason; }

stop_watch::stop_watch(double timeout_seconds) {
    g_reason = g_signalled ? stop_reason::signal : stop_reason::none;
    if (timeout_seconds <= 0) return;
    g_deadline = now() + timeout_seconds;
    g_has_deadline = true;
    set_ticking(true);
}

stop_watch::~stop_watch() {
    set_context(nullptr);
    g_has_deadline = false;
    set_ticking(false);
}

void stop_watch::set_context(vexor::context* ctx) { g_context = ctx; }

} // namespace vexor_tool
