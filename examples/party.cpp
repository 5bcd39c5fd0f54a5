// Friends and strangers at a party, with a time limit by another thread.
//
// Any two guests are friends or strangers. Can a party avoid k guests who are all friends, and k who are all
// strangers? For k = 3, five guests can: seated at a round table, each is a friend of the two neighbours.
// Six cannot: a guest has three friends or three strangers among the other five. If any two of three friends
// are friends, these two and the guest are a group; if not, the three are one of strangers; and likewise the
// other way around. For k = 4, eighteen is the least number that cannot, but to search all cases is hopeless:
// a second thread ends the search, and the context works on.
//
//     c++ party.cpp $(pkg-config --cflags --libs vexor) -pthread
#include <chrono>
#include <condition_variable>
#include <exception>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

#include <vexor.h>

namespace {

// Interrupts the context when the time is over, as long as it lives.
//
// An interruption has no effect if no search runs, perhaps because it has not begun yet. So it is repeated.
class time_limit {
public:
    time_limit(vexor_context ctx, std::chrono::milliseconds limit)
        : m_thread([this, ctx, limit] { watch(ctx, limit); }) {}
    time_limit(time_limit const&) = delete;
    time_limit& operator=(time_limit const&) = delete;
    ~time_limit() {
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            m_done = true;
        }
        m_wake.notify_one();
        m_thread.join();
    }

private:
    void watch(vexor_context ctx, std::chrono::milliseconds wait) {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_wake.wait_for(lock, wait, [this] { return m_done; })) {
            vexor_interrupt(ctx);
            wait = std::chrono::milliseconds(20);
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_done = false;
    std::thread m_thread; // last: it uses the others
};

class party {
public:
    explicit party(int guests)
        : m_ctx(vexor_mk_context())
        , m_guests(guests) {
        for (int i = 0; i < guests * guests; ++i) m_friends.push_back(vexor_mk_fresh_bool_var(m_ctx));
    }
    party(party const&) = delete;
    party& operator=(party const&) = delete;
    ~party() { vexor_del_context(m_ctx); }

    // Of any k of the first n guests, not all are friends and not all are strangers. Holds in a scope of its
    // own.
    void avoid_groups(int k, int n) {
        vexor_push(m_ctx);
        std::vector<int> group;
        avoid_groups(group, k, n, 0);
    }
    void forget_groups() { vexor_pop(m_ctx); }
    lbool check(std::chrono::milliseconds limit) {
        time_limit const frame(m_ctx, limit);
        return vexor_check(m_ctx);
    }

private:
    void avoid_groups(std::vector<int>& group, int k, int n, int next) {
        if (static_cast<int>(group.size()) == k) return avoid_group(group);
        for (int guest = next; guest < n; ++guest) {
            group.push_back(guest);
            avoid_groups(group, k, n, guest + 1);
            group.pop_back();
        }
    }
    void avoid_group(std::vector<int> const& group) {
        std::vector<vexor_expr> friends, strangers;
        for (std::size_t i = 0; i < group.size(); ++i) {
            for (std::size_t j = i + 1; j < group.size(); ++j) {
                vexor_expr const pair = m_friends[static_cast<std::size_t>(group[i] * m_guests + group[j])];
                friends.push_back(pair);
                strangers.push_back(vexor_mk_not(m_ctx, pair));
            }
        }
        unsigned const size = static_cast<unsigned>(friends.size());
        vexor_assert(m_ctx, vexor_mk_or(m_ctx, friends.data(), size));
        vexor_assert(m_ctx, vexor_mk_or(m_ctx, strangers.data(), size));
    }

    vexor_context m_ctx;
    int m_guests;
    std::vector<vexor_expr> m_friends; // whether guests i < j are friends, at i * m_guests + j
};

char const* text_of(lbool answer) {
    return answer == 1 ? "possible" : answer == -1 ? "impossible" : "no answer in time";
}

} // namespace

int main() {
    try {
        party p(18);
        struct {
            int guests, group, limit_ms;
        } const questions[] = {{5, 3, 60000}, {6, 3, 60000}, {18, 4, 300}, {6, 3, 60000}, {5, 3, 60000}};
        for (auto const& q : questions) {
            p.avoid_groups(q.group, q.guests);
            lbool const answer = p.check(std::chrono::milliseconds(q.limit_ms));
            p.forget_groups();
            std::cout << q.guests << " guests without a group of " << q.group << ": " << text_of(answer)
                      << "\n";
        }
    } catch (std::exception const& e) {
        std::cerr << e.what() << "\n";
        return 1;
    }
    return 0;
}
