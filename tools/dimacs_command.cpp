#include "dimacs_command.h"

#include <ios>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "base/exceptions.h"
#include "dimacs_output.h"
#include "frontend/cnf_parser.h"
#include "input.h"
#include "model_check.h"
#include "progress.h"
#include "search/context.h"
#include "search/search_settings.h"
#include "stop_request.h"

namespace vexor_tool {

namespace {

// Debug builds destroy everything, so that leaks and faults of destructors are found.
#ifdef VEXOR_DEBUG
constexpr bool takes_everything_apart = true;
#else
constexpr bool takes_everything_apart = false;
#endif

// The work on one file: context, input and watch live exactly as long as it.
class dimacs_run {
public:
    dimacs_run(options const& opts, std::string const& file)
        : m_options(opts)
        , m_watch(std::in_place, opts.m_timeout_seconds)
        , m_file(file)
        , m_max_sat(format_of(opts, file) == input_format::wcnf) {
        m_watch->set_context(&m_context);
    }

    int run() {
        int answer = decide();
        m_watch->set_context(nullptr);
        if (has_model(answer) && m_options.m_validate && !validate()) answer = 0;
        print(answer);
        return exit_code_of(answer, m_max_sat);
    }

    // For an object that is not destroyed: the watch must not outlive the work.
    void end_watch() { m_watch.reset(); }

private:
    int decide() {
        try {
            m_input = std::make_unique<input>(m_file);
            if (m_options.m_validate) m_input->make_repeatable();
            vexor::read_dimacs(&m_context, m_input->stream(), m_input->name().c_str(), m_max_sat);
        } catch (interrupted_exception const&) {
            return 0;
        }
        m_num_vars = static_cast<int>(m_context.num_bool_vars() - m_context.get_weighted_vars().size()) -
                     vexor::first_bool_var;
        if (m_context.inconsistent()) return -1;
        if (stop_requested() != stop_reason::none) return 0;
        if (!m_options.m_quiet) show_progress(m_context);
        set_phase();
        return m_max_sat ? minimize() : m_context.check();
    }

    void set_phase() const {
        if (m_options.m_phase >= 0) {
            vexor::g_decision_polarity = m_options.m_phase;
        } else if (!m_max_sat) {
            vexor::g_decision_polarity = vexor::saved_polarity;
        }
    }

    // The time limit, not a number of rounds, is what ends the search.
    int minimize() {
        vexor::g_max_num_runs_in_maxsat_iteration = 0;
        vexor::g_max_num_iterations_in_maxsat = std::numeric_limits<unsigned>::max();
        m_context.set_improvement_callback(
            [](vexor::context& ctx) { print_cost(std::cout, ctx.get_model()); });
        int const answer = m_context.max_sat();
        // Without soft clauses there was nothing to improve.
        if (answer > 0 && m_context.get_weighted_vars().empty()) print_cost(std::cout, m_context.get_model());
        return answer;
    }

    // A stop leaves the best model so far.
    [[nodiscard]] bool has_model(int answer) const {
        return answer > 0 || (m_max_sat && answer == 0 && m_context.get_model().is_valid());
    }

    // False if a stop while the file is read again leaves the answer open.
    bool validate() {
        try {
            m_input->rewind();
            if (satisfies_file(m_context.get_model(), m_input->stream(), m_input->name().c_str(), m_max_sat))
                return true;
        } catch (interrupted_exception const&) {
            return false;
        }
        throw std::runtime_error("the assignment found does not satisfy the file");
    }

    void print(int answer) {
        print_status(std::cout, answer, m_max_sat);
        if (has_model(answer) && m_options.m_print_model)
            print_values(std::cout, m_context.get_model(), m_num_vars);
        if (m_options.m_stats || stop_requested() == stop_reason::signal) {
            m_context.get_statistics().display(std::cout, "c ");
        }
        std::cout.flush();
    }

    options const& m_options;
    vexor::context m_context;
    std::optional<stop_watch> m_watch; // ends before the context
    std::string m_file;                // as on the command line
    std::unique_ptr<input> m_input;    // set once it could be opened
    bool m_max_sat;                    // weights are prices, to be minimized
    int m_num_vars = 0;                // of the file, guards of soft clauses apart
};

} // namespace

int run_dimacs(options const& opts, std::string const& file, bool last_file) {
    try {
        auto work = std::make_unique<dimacs_run>(opts, file);
        int code = work->run();
        if (last_file && !takes_everything_apart) work.release()->end_watch();
        return code;
    } catch (std::system_error const& error) {
        throw vexor::cnf_exception(file, 0, "the file cannot be read: " + error.code().message());
    }
}

} // namespace vexor_tool
