#include "api/call_log.h"

#include "api/log_printer.h"

#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace vexor {

namespace {

// The file, without a buffer of ours: what was written stays, whatever becomes of the process.
class log_file {
public:
    // A file that cannot be opened is a log that nothing comes of.
    void open(char const* name) {
        if (m_is_on) return;
        m_is_on = true;
        m_descriptor = ::open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    }
    [[nodiscard]] bool is_on() const { return m_is_on; }
    [[nodiscard]] long size() const { return m_size; }
    void append(std::string const& text) {
        std::size_t done = 0;
        while (m_descriptor >= 0 && done < text.size()) {
            ssize_t const n = ::write(m_descriptor, text.data() + done, text.size() - done);
            if (n < 0 && errno != EINTR) break;
            if (n > 0) done += static_cast<std::size_t>(n);
        }
        m_size += static_cast<long>(done);
    }
    // Cuts the file; false if it is none that can be cut, as a pipe.
    bool cut(long size) {
        if (m_descriptor < 0 || ::ftruncate(m_descriptor, size) != 0) return false;
        ::lseek(m_descriptor, size, SEEK_SET);
        m_size = size;
        return true;
    }

private:
    bool m_is_on = false;  // was open called
    int m_descriptor = -1; // never closed: the log is complete at the end of the process
    long m_size = 0;       // bytes written
};

log_file g_log;
log_names g_log_names;

std::string as_comment(std::string const& text) {
    std::string result = "; " + text;
    for (char& c : result)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    return result + "\n";
}

// A name that stands for another one is explained by a comment.
template <class Decl>
std::string explained(Decl* d) {
    std::string const name = d->get_name().c_str();
    std::string const written = g_log_names.written(d->get_name()).c_str();
    return written == name ? "" : as_comment(written + " is the name " + name);
}

} // namespace

void open_call_log(char const* file_name) { g_log.open(file_name); }

bool is_logging() { return g_log.is_on(); }

logged_call::logged_call(char const* command) {
    if (is_logging()) begin(command);
}

logged_call::logged_call(char const* command, expr* e, std::string const& argument) {
    if (!is_logging()) return;
    std::string text = std::string(command) + " " + log_text(e, g_log_names);
    begin(argument.empty() ? text : text + " " + argument);
}

logged_call::logged_call(char const* command, std::string const& argument) {
    if (is_logging()) begin(std::string(command) + " " + argument);
}

void logged_call::begin(std::string text) {
    m_num_exceptions = std::uncaught_exceptions();
    m_text = "(" + std::move(text) + ")";
    m_start = g_log.size();
    g_log.append(m_text + "\n");
}

logged_call::~logged_call() {
    if (m_text.empty() || std::uncaught_exceptions() == m_num_exceptions) return;
    if (g_log.cut(m_start)) g_log.append(as_comment("failed: " + m_text));
}

void log_declaration(var_decl* d) {
    if (!is_logging()) return;
    std::string text = explained(d);
    text += "(define ";
    text += g_log_names.written(d->get_name()).c_str();
    text += "::" + log_text(d->get_type(), g_log_names) + ")\n";
    g_log.append(text);
}

void log_declaration(type_decl* d) {
    if (!is_logging()) return;
    g_log.append(explained(d) + "(define-type " + g_log_names.written(d->get_name()).c_str() + ")\n");
}

} // namespace vexor
