// A value that counts its live objects and notices use after destruction.
#pragma once

#include <cstdlib>

namespace vexor_test {

class tracked {
public:
    tracked()
        : tracked(0) {}
    tracked(int value)
        : m_value(value)
        , m_self(this) {
        s_live++;
    }
    tracked(tracked const& other)
        : tracked(other.get()) {}
    tracked& operator=(tracked const& other) {
        m_value = other.get();
        return *this;
    }
    ~tracked() {
        get();
        m_self = nullptr;
        s_live--;
    }
    int get() const {
        if (m_self != this) std::abort(); // moved as raw memory, or destroyed
        return m_value;
    }
    friend bool operator==(tracked const& a, tracked const& b) { return a.get() == b.get(); }
    static int live() { return s_live; }

private:
    int m_value;
    tracked const* m_self;
    inline static int s_live = 0;
};

} // namespace vexor_test
