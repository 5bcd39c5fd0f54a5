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
class context_sink : public cnf_sink {
public:
    explicit context_sink(context& ctx)
        : m_context(ctx) {}

    [[nodiscard]] int num_vars() const override { return static_cast<int>(m_context.num_bool_vars()); }

    void create_vars(int count) override {
        for (int i = 0; i < count; ++i) m_context.create_fresh_bool_var();
    }

    void add_hard_clause(svector<literal> const& literals) override {
        m_context.create_clause_core(literals, clause_kind::problem);
    }

    void add_soft_clause(svector<literal>&, long) override {
        throw feature_not_implemented_exception("soft clauses");
    }

private:
    context& m_context; // destination
};

} // namespace

void read_dimacs(context* ctx, std::istream& in, char const* file_name, bool max_sat) {
    context_sink sink(*ctx);
    cnf_parser(sink, in, file_name, max_sat).read();
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
