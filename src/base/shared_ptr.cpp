#include "base/shared_ptr.h"

namespace vexor {

namespace {

// Plain data without destructor: static objects may release nodes while the process ends.
struct release_queue {
    shared_obj_base** m_waiting; // objects without references that still have to be destroyed
    std::size_t m_size;
    std::size_t m_capacity;
    bool m_running; // a destructor is running further up
};
constinit release_queue g_queue{};

void enqueue(shared_obj_base* object) {
    if (g_queue.m_size == g_queue.m_capacity) {
        g_queue.m_capacity = g_queue.m_capacity == 0 ? 64 : (g_queue.m_capacity * 3 + 1) / 2;
        g_queue.m_waiting = static_cast<shared_obj_base**>(
            xrealloc(static_cast<void*>(g_queue.m_waiting), g_queue.m_capacity * sizeof(shared_obj_base*)));
    }
    g_queue.m_waiting[g_queue.m_size++] = object;
}

} // namespace

// Keeps: each waiting object has no references and stands in the list once, as only the step to 0 enters it.
// Ends:  an object is destroyed once.
// Cost:  a push and a pop per object; the memory for the list is kept, it is as large as the widest release.
void release_shared_obj(shared_obj_base* object) noexcept {
    if (g_queue.m_running) {
        enqueue(object);
        return;
    }
    g_queue.m_running = true;
    delete object;
    release_pending_shared_objs();
    g_queue.m_running = false;
}

void release_pending_shared_objs() noexcept {
    bool was_running = g_queue.m_running;
    g_queue.m_running = true;
    while (g_queue.m_size != 0) delete g_queue.m_waiting[--g_queue.m_size];
    g_queue.m_running = was_running;
}

} // namespace vexor
