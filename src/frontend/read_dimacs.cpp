// The DIMACS reader with a context as its destination.
#include <cerrno>
#include <cstring>
#include <fstream>

#include "base/exceptions.h"
#include "frontend/cnf_parser.h"
#include "search/context.h"

namespace vexor {

namespace {

// Turns variables and clauses of a file into those of a context.
//
// In a large file each literal's watch list is far away in memory, and waiting for it takes most of the time
// of a clause. So a clause is announced first and added when the next ones have been read.
class context_sink : public cnf_sink {
public:
    explicit context_sink(context& ctx)
        : m_context(ctx) {}
    context_sink(context_sink const&) = delete; // each clause is added once
    context_sink& operator=(context_sink const&) = delete;
    // Also after an error the clauses before it belong to the context.
    ~context_sink() override { flush(); }

    void flush() {
        for (unsigned i = 0; i < max_delayed; ++i) {
            add_oldest();
            m_next = (m_next + 1) % max_delayed;
        }
    }

    [[nodiscard]] int num_vars() const override { return static_cast<int>(m_context.num_bool_vars()); }

    void create_vars(int count) override {
        for (int i = 0; i < count; ++i) m_context.create_fresh_bool_var();
    }

    void add_hard_clause(svector<literal> const& literals) override {
        add_oldest();
        delayed_clause& newest = m_delayed[m_next];
        newest.m_used = true;
        newest.m_literals = literals;
        m_next = (m_next + 1) % max_delayed;
        for (literal l : literals) m_context.prefetch(l);
    }

    void add_soft_clause(svector<literal>& literals, long weight) override {
        literals.push_back(m_context.create_fresh_weighted_bool_var(weight));
        add_hard_clause(literals);
    }

private:
    static constexpr unsigned max_delayed = 16;

    struct delayed_clause {
        bool m_used = false; // a clause waits here
        svector<literal> m_literals;
    };

    // Frees the place that is filled next.
    void add_oldest() {
        delayed_clause& oldest = m_delayed[m_next];
        if (oldest.m_used) m_context.create_clause_core(oldest.m_literals, clause_kind::problem);
        oldest.m_used = false;
    }

    context& m_context;                    // destination
    delayed_clause m_delayed[max_delayed]; // a ring of read clauses that wait
    unsigned m_next = 0;                   // the oldest of them, the place of the next one
};

} // namespace

void read_dimacs(context* ctx, std::istream& in, char const* file_name, bool max_sat) {
    {
        context_sink sink(*ctx);
        cnf_parser(sink, in, file_name, max_sat).read();
    }
    ctx->propagate_constraints();
}

void read_dimacs(context* ctx, char const* file_name, bool max_sat) {
    errno = 0;
    std::ifstream in(file_name, std::ios::binary);
    if (!in) {
        throw cnf_exception(file_name, 0, std::string("the file cannot be read: ") + std::strerror(errno));
    }
    read_dimacs(ctx, in, file_name, max_sat);
}

} // namespace vexor
