#include "support/run_program.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vexor_test {

namespace {

using steady = std::chrono::steady_clock;

double seconds_since(steady::time_point start) {
    return std::chrono::duration<double>(steady::now() - start).count();
}

struct pipe_ends {
    int m_read = -1, m_write = -1;
    explicit pipe_ends(bool terminal = false) {
        int ends[2];
        if (terminal ? openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) : pipe2(ends, 0)) {
            throw std::runtime_error("no pipe");
        }
        m_read = ends[0];
        m_write = ends[1];
        fcntl(m_read, F_SETFD, FD_CLOEXEC);
        fcntl(m_write, F_SETFD, FD_CLOEXEC);
    }
    ~pipe_ends() {
        close_read();
        close_write();
    }
    pipe_ends(pipe_ends const&) = delete;
    pipe_ends& operator=(pipe_ends const&) = delete;
    void close_read() {
        if (m_read >= 0) close(m_read);
        m_read = -1;
    }
    void close_write() {
        if (m_write >= 0) close(m_write);
        m_write = -1;
    }
};

[[noreturn]] void become(std::vector<std::string> const& command, program_options const& options, int in,
                         int out, int err) {
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (options.address_space_mb != 0) {
        rlimit limit{};
        limit.rlim_cur = limit.rlim_max = options.address_space_mb << 20;
        setrlimit(RLIMIT_AS, &limit);
    }
    rlimit no_core{};
    setrlimit(RLIMIT_CORE, &no_core);
    std::vector<char*> words;
    for (std::string const& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execv(words[0], words.data());
    _exit(127);
}

// Moves bytes between the child and our strings until the child closed its outputs.
class conversation {
public:
    conversation(pid_t child, program_options const& options, program_run& result, pipe_ends& in,
                 pipe_ends& out, pipe_ends& err)
        : m_child(child)
        , m_options(options)
        , m_result(result)
        , m_in(in)
        , m_out(out)
        , m_err(err) {}

    void run() {
        fcntl(m_in.m_write, F_SETFL, O_NONBLOCK);
        while (m_out.m_read >= 0 || m_err.m_read >= 0) {
            send_signals();
            feed();
            pollfd polls[3] = {
                {m_out.m_read, POLLIN, 0}, {m_err.m_read, POLLIN, 0}, {m_in.m_write, POLLOUT, 0}};
            bool feeding = m_in.m_write >= 0 && m_fed < m_options.input.size();
            poll(polls, feeding ? 3 : 2, 20);
            if (polls[0].revents) drain(m_out, m_result.out);
            if (polls[1].revents) drain(m_err, m_result.err);
        }
    }

private:
    void send_signals() {
        double now = seconds_since(m_start);
        if (m_options.signal != 0 && !m_signalled && now >= m_options.signal_after_seconds) {
            m_signalled = true;
            kill(m_child, m_options.signal);
        }
        if (now >= m_options.limit_seconds && !m_result.timed_out) {
            m_result.timed_out = true;
            kill(m_child, SIGKILL);
        }
    }

    void feed() {
        if (m_in.m_write < 0) return;
        while (m_fed < m_options.input.size()) {
            ssize_t sent =
                write(m_in.m_write, m_options.input.data() + m_fed, m_options.input.size() - m_fed);
            if (sent < 0 && errno == EAGAIN) return;
            if (sent <= 0) break;
            m_fed += static_cast<std::size_t>(sent);
        }
        if (!m_options.keep_input_open) m_in.close_write();
    }

    static void drain(pipe_ends& from, std::string& to) {
        char block[1 << 16];
        ssize_t got = read(from.m_read, block, sizeof block);
        if (got > 0) {
            to.append(block, static_cast<std::size_t>(got));
        } else {
            from.close_read(); // a closed terminal reports an error instead of the end
        }
    }

    pid_t m_child;
    program_options const& m_options;
    program_run& m_result;
    pipe_ends &m_in, &m_out, &m_err;
    steady::time_point m_start = steady::now();
    std::size_t m_fed = 0;
    bool m_signalled = false;
};

} // namespace

program_run run_program(std::vector<std::string> const& command, program_options const& options) {
    std::signal(SIGPIPE, SIG_IGN); // a child may end before it has read everything
    program_run result;
    pipe_ends in, out, err(options.terminal_errors);
    steady::time_point start = steady::now();
    pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        become(command, options, in.m_read, out.m_write, err.m_write);
    }
    in.close_read();
    out.close_write();
    err.close_write();
    conversation(child, options, result, in, out, err).run();
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.seconds = seconds_since(start);
    if (WIFEXITED(status)) result.exit_code = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    return result;
}

temporary_file::temporary_file(std::string const& name, std::string const& text) {
    std::string pattern = (std::filesystem::temp_directory_path() / "vexor-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    m_folder = pattern;
    m_path = m_folder + "/" + name;
    std::ofstream(m_path, std::ios::binary) << text;
}

temporary_file::~temporary_file() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

} // namespace vexor_test
