#include "base/exceptions.h"

#include "base/string_buffer.h"

namespace vexor {

char const* vexor_exception::what() const noexcept { return "Unspecified vexor exception."; }

char const* arithmetic_overflow_exception::what() const noexcept { return "arithmetic overflow."; }

char const* division_by_zero_exception::what() const noexcept { return "division by zero."; }

char const* non_difference_logic_exception::what() const noexcept {
    return "non difference logic constraint";
}

namespace {

bool is_known(position_tracker::position const& pos) { return pos.m_line != -1 || pos.m_pos != -1; }

std::string print(position_tracker::position const& pos) {
    string_buffer buffer;
    dump_position(buffer, pos);
    return buffer.c_str();
}

} // namespace

feature_not_implemented_exception::feature_not_implemented_exception(std::string const& text,
                                                                     position_tracker::position const& pos,
                                                                     std::string const& printed_term)
    : m_text(text)
    , m_position(pos) {
    if (is_known(pos)) m_message = print(pos).append(" ");
    m_message.append("feature not supported: ").append(text);
    if (!printed_term.empty()) m_message.append(" ").append(printed_term);
    m_message += ".";
}

cnf_exception::cnf_exception(std::string const& file_name, unsigned long line, std::string const& reason)
    : m_file_name(file_name)
    , m_line(line)
    , m_reason(reason)
    , m_message("Invalid dimacs file: \"" + file_name + "\".") {}

char const* specification_exception::what_core() const noexcept { return "Unspecified vexor exception."; }

char const* specification_exception::what() const noexcept {
    try {
        m_message = print(m_position).append(" ").append(what_core());
        return m_message.c_str();
    } catch (...) { // out of memory: the sentence alone needs none
        return what_core();
    }
}

} // namespace vexor
