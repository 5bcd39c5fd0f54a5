// Random well-typed terms over small types, with every construct that the simplifier rewrites.
#pragma once

#include "support/random.h"
#include "support/term_evaluator.h"
#include "support/terms.h"

#include <vector>

namespace vexor_test {

class random_terms {
public:
    explicit random_terms(vexor::ast_manager& m);

    // How often subterms are bit-vector operators, binders; in percent.
    unsigned m_bv_percent = 30;
    unsigned m_binder_percent = 15;
    // Widths go from 1 to this.
    unsigned m_max_width = 4;

    vexor::expr* boolean(random_stream& random, unsigned depth);
    vexor::expr* bits(random_stream& random, unsigned width, unsigned depth);
    // A random value for each constant.
    void choose_constants(term_evaluator& eval, random_stream& random);

private:
    vexor::expr* colour(random_stream& random, unsigned depth);
    vexor::expr* predicate(random_stream& random, unsigned depth); // from colour to bool
    vexor::expr* pair(random_stream& random, unsigned depth);      // of bool and colour
    vexor::expr* point(random_stream& random, unsigned depth);     // record of bool and colour
    vexor::expr* quantifier(random_stream& random, unsigned depth);
    vexor::expr* bv_relation(random_stream& random, unsigned depth);
    vexor::expr* variable_of(random_stream& random, vexor::type* t);
    vexor::expr* with_let(random_stream& random, unsigned depth);
    vexor::expr* shared(random_stream& random, std::vector<vexor::expr*>& pool, vexor::expr* e);
    vexor::var_decl* new_variable(random_stream& random);

    terms t;
    vexor::type* m_boolean;
    vexor::type* m_colour;
    vexor::type* m_some_colour; // a subtype, which may be empty
    vexor::type* m_vector;      // two bits
    vexor::type* m_predicate;
    std::vector<vexor::var_decl*> m_constants;
    std::vector<vexor::var_decl*> m_scope; // bound variables
    std::vector<vexor::expr*> m_pool;      // closed Boolean terms made before
};

} // namespace vexor_test
