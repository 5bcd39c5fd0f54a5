// From a running count of characters back to file, line and column.
#pragma once

#include <iosfwd>

#include "base/vector.h"

namespace vexor {

class string_buffer;

// The input of a solver is one sequence of characters, though it comes from many files that include each
// other. The tracker cuts it into spans, one for each stretch of a file, and keeps where lines end. Counts
// that pass the range of int stay at its end: positions beyond are then imprecise and nothing else.
//
// Each call of an interface that takes text is a file, and a program may make calls without end: of too many
// spans the older half is forgotten, and positions in them are invalid.
class position_tracker {
public:
    static constexpr unsigned max_spans = 1U << 16;

    struct position {
        int m_line = -1;
        int m_column = -1;
        char const* m_file_name = nullptr; // interned, may be null
        int m_pos = -1;                    // offset in the file
    };

    // A file begins, behind the last closed position.
    void new_file(char const* name);
    // The rest of a file follows, after a nested one that ended.
    void continue_file(int offset, int column, int line, char const* name);
    // The span ends; pos is its last position.
    void close_file(int pos);
    // A line of the last span ends at pos.
    void new_line(int pos);

    // The invalid position for a negative pos and for one before all files. O(log lines + files).
    [[nodiscard]] position get_position(int pos) const;
    // Where pos stands in the last span; a file must have been opened.
    void get_curr_file_info(int pos, char const*& name, int& file_pos, int& line, int& column) const;
    [[nodiscard]] int get_file_initial_pos() const;
    [[nodiscard]] bool is_file_open() const { return m_file_open; }
    // Position of the last closed span's end, -1 at the start.
    [[nodiscard]] int get_closed_pos() const { return m_pos; }

    void check_invariant() const;

private:
    void forget_older_half();

    struct file_info {
        int m_initial_pos;          // running position where the span starts
        int m_initial_offset;       // offset in the file there
        int m_initial_column;       // column there
        int m_curr_line;            // current line number
        char const* m_file_name;    // interned: positions outlive the tracker
        svector<int> m_line_starts; // m_initial_pos - 1, then the running positions of line ends, in order
    };

    int m_pos = -1;            // last closed running position
    bool m_file_open = false;  // between new_file or continue_file and close_file
    vector<file_info> m_files; // in the order of opening
};

// Writes "[name, line(l), column(c), position(p)]:", "(null)" standing for an absent name.
void dump_position(std::ostream& out, position_tracker::position const& pos);
void dump_position(string_buffer& out, position_tracker::position const& pos);
std::ostream& operator<<(std::ostream& out, position_tracker::position const& pos);

} // namespace vexor
