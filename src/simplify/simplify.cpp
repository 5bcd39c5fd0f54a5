#include "simplify/simplify.h"

#include "base/diagnostics.h"
#include "simplify/eliminate_term_ite_visitor.h"
#include "simplify/hash_consing_visitor.h"
#include "simplify/simplify_visitor.h"

#include <iostream>

namespace vexor {

namespace {

void announce(char const* step) {
    if (get_verbosity_level() > 9) std::cerr << step;
}

void simplify_and_share(shared_ptr<expr>& e) {
    announce("simplifying...\n");
    basic_simplify(e);
    announce("hash consing...\n");
    apply<or_ite_bv_hash_consing_visitor>(e);
    announce("eliminating term ite...\n");
}

} // namespace

void basic_simplify(shared_ptr<expr>& e) { apply<simplify_visitor>(e); }

void simplify(shared_ptr<expr>& e) {
    simplify_and_share(e);
    apply<eliminate_term_ite_visitor>(e);
    announce("Done simplifying...\n");
}

void simplify(shared_ptr<expr>& e, context*) {
    simplify_and_share(e);
    eliminate_term_ite_visitor v;
    run_visitor(v, e);
}

} // namespace vexor
