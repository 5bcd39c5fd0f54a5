#include "base/position_tracker.h"

#include <algorithm>
#include <climits>
#include <ostream>
#include <utility>

#include "base/debug.h"
#include "base/string_buffer.h"
#include "base/ustring.h"

namespace vexor {

static int saturate(long value) { return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX)); }

void position_tracker::new_file(char const* name) { continue_file(0, 0, 1, name); }

void position_tracker::continue_file(int offset, int column, int line, char const* name) {
    char const* interned = name ? g_ustring_manager.unique_string(name) : nullptr;
    if (m_files.size() == max_spans) forget_older_half();
    m_files.push_back(file_info{saturate(m_pos + 1L), offset, column, line, interned, {}});
    m_files.back().m_line_starts.push_back(m_pos);
    m_file_open = true;
}

void position_tracker::forget_older_half() {
    unsigned const half = m_files.size() / 2;
    for (unsigned i = half; i < m_files.size(); ++i) m_files[i - half] = std::move(m_files[i]);
    m_files.shrink(m_files.size() - half);
}

void position_tracker::close_file(int pos) {
    m_file_open = false;
    m_pos = pos;
}

void position_tracker::new_line(int pos) {
    if (m_files.empty()) return;
    file_info& file = m_files.back();
    file.m_curr_line = saturate(file.m_curr_line + 1L);
    file.m_line_starts.push_back(std::max(pos, file.m_line_starts.back()));
}

position_tracker::position position_tracker::get_position(int pos) const {
    if (pos < 0) return position();
    unsigned i = m_files.size();
    while (i > 0 && m_files[i - 1].m_initial_pos > pos) i--;
    if (i == 0) return position();
    file_info const& file = m_files[i - 1];
    svector<int> const& ends = file.m_line_starts;
    // The line of pos is the one behind the last line end before it.
    long line_end = std::lower_bound(ends.begin(), ends.end(), pos) - ends.begin() - 1;
    int line = saturate(long{file.m_curr_line} - (long{ends.size()} - 1 - line_end));
    if (line_end < 0) return {line, file.m_initial_column, file.m_file_name, file.m_initial_offset};
    long column = long{pos} - ends[static_cast<unsigned>(line_end)];
    if (line_end == 0) column += file.m_initial_column;
    return {line, saturate(column), file.m_file_name,
            saturate(long{pos} - file.m_initial_pos + file.m_initial_offset)};
}

void position_tracker::get_curr_file_info(int pos, char const*& name, int& file_pos, int& line,
                                          int& column) const {
    VEXOR_ASSERT(!m_files.empty());
    file_info const& file = m_files.back();
    file_pos = saturate(long{file.m_initial_offset} + pos - file.m_initial_pos);
    line = file.m_curr_line;
    column = saturate(long{pos} - file.m_line_starts.back());
    name = file.m_file_name;
}

int position_tracker::get_file_initial_pos() const {
    VEXOR_ASSERT(!m_files.empty());
    return m_files.back().m_initial_pos;
}

void position_tracker::check_invariant() const {
    for (file_info const& file : m_files) {
        VEXOR_ASSERT(!file.m_line_starts.empty());
        VEXOR_ASSERT(std::is_sorted(file.m_line_starts.begin(), file.m_line_starts.end()));
        static_cast<void>(file);
    }
    VEXOR_ASSERT(!m_file_open || !m_files.empty());
}

void dump_position(string_buffer& out, position_tracker::position const& pos) {
    out << "[" << (pos.m_file_name ? pos.m_file_name : "(null)") << ", line(" << pos.m_line << "), column("
        << pos.m_column << "), position(" << pos.m_pos << ")]:";
}

void dump_position(std::ostream& out, position_tracker::position const& pos) {
    out << "[" << (pos.m_file_name ? pos.m_file_name : "(null)") << ", line(" << pos.m_line << "), column("
        << pos.m_column << "), position(" << pos.m_pos << ")]:";
}

std::ostream& operator<<(std::ostream& out, position_tracker::position const& pos) {
    dump_position(out, pos);
    return out;
}

} // namespace vexor
