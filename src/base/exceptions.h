// The tree of exceptions that report errors in the caller's input; its root is vexor_exception.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "base/position_tracker.h"

namespace vexor {

class vexor_exception : public std::exception {
public:
    char const* what() const noexcept override;
};

// A decimal literal that is too long to be read.
class arithmetic_overflow_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

class division_by_zero_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

// An internal inconsistency that the system refuses to go on with.
class vexor_debug_exception : public vexor_exception {
public:
    explicit vexor_debug_exception(std::string text)
        : m_text(std::move(text)) {}
    char const* what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text; // the message
};

// A problem was declared to be of difference logic and is not.
class non_difference_logic_exception : public vexor_exception {
public:
    char const* what() const noexcept override;
};

// The input uses something that no solver handles. Where the offending term is known its printed form stands
// behind the text, and where its position is known that stands in front of the message.
class feature_not_implemented_exception : public vexor_exception {
public:
    explicit feature_not_implemented_exception(std::string const& text,
                                               position_tracker::position const& pos = {},
                                               std::string const& printed_term = {});
    char const* what() const noexcept override { return m_message.c_str(); }
    std::string const& get_text() const { return m_text; }
    position_tracker::position const& get_position() const { return m_position; }

private:
    std::string m_text;                    // what is not supported
    position_tracker::position m_position; // invalid when not known
    std::string m_message;                 // the whole message
};

// A file in the DIMACS formats that cannot be read. what() names the file alone; where and why reading ended
// is kept beside it for callers that can show more.
class cnf_exception : public vexor_exception {
public:
    // The line counts from 1; 0 where none is known, as for a file that cannot be opened.
    explicit cnf_exception(std::string const& file_name, unsigned long line = 0,
                           std::string const& reason = {});
    char const* what() const noexcept override { return m_message.c_str(); }
    std::string const& get_file_name() const { return m_file_name; }
    unsigned long get_line() const { return m_line; }
    std::string const& get_reason() const { return m_reason; }

private:
    std::string m_file_name; // as the caller gave it
    unsigned long m_line;    // where reading ended, 0 for unknown
    std::string m_reason;    // what was expected and what was found
    std::string m_message;   // the whole message
};

// A fault at a place of the input. The message is the position, a blank and what_core().
//
// The text belongs to the exception: it stays valid as long as the exception, whatever other messages are
// asked for.
class specification_exception : public vexor_exception {
public:
    explicit specification_exception(position_tracker::position const& pos)
        : m_position(pos) {}
    char const* what() const noexcept override;
    // The message without the position.
    virtual char const* what_core() const noexcept;
    position_tracker::position const& get_position() const { return m_position; }

private:
    position_tracker::position m_position; // of the fault
    mutable std::string m_message;         // built by what()
};

} // namespace vexor
