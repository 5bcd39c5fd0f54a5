#include "support/small_stack.h"

#include <cstdlib>
#include <pthread.h>

namespace vexor_test {

namespace {

void* enter(void* f) {
    (*static_cast<std::function<void()> const*>(f))();
    return nullptr;
}

} // namespace

void on_small_stack(std::function<void()> const& f) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, 512 * 1024);
    pthread_t thread;
    if (pthread_create(&thread, &attributes, enter, const_cast<std::function<void()>*>(&f)) != 0)
        std::abort();
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace vexor_test
