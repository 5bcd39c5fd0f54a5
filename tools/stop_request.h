// Requests to end the work from outside: a signal of the user, or a time limit.
#pragma once

namespace vexor {
class context;
}

namespace vexor_tool {

enum class stop_reason { none, timeout, signal };

// Makes SIGINT and SIGTERM ask for a stop instead of ending the process. A second one ends it as usual.
void catch_stop_signals();

// What the running work was asked; timeouts are noticed within some 20 ms.
stop_reason stop_requested();

// Watches the work on one file. While a watch lives, a signal or the end of the time stops the search of the
// watched context again and again, since a request that comes before the search has started is lost on the
// context. At most one lives at a time.
class stop_watch {
public:
    // No limit with 0 seconds.
    explicit stop_watch(double timeout_seconds);
    ~stop_watch();
    stop_watch(stop_watch const&) = delete; // the signal handler knows one watch
    stop_watch& operator=(stop_watch const&) = delete;

    // The context must stay alive until the watch ends or gets another context or null.
    void set_context(vexor::context* ctx);
};

} // namespace vexor_tool
