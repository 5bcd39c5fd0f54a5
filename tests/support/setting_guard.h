// Puts a setting of the process back at the end of a block.
#pragma once

#include <utility>

namespace vexor_test {

template <typename T>
class setting_guard {
public:
    explicit setting_guard(T& setting)
        : m_setting(setting)
        , m_old(setting) {}
    setting_guard(T& setting, T value)
        : setting_guard(setting) {
        setting = std::move(value);
    }
    setting_guard(setting_guard const&) = delete; // restores once
    setting_guard& operator=(setting_guard const&) = delete;
    ~setting_guard() { m_setting = std::move(m_old); }

private:
    T& m_setting;
    T m_old;
};

} // namespace vexor_test
