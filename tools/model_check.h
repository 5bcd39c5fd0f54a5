// The proof of a satisfiable answer: the file once more, each clause against the model.
#pragma once

#include <istream>

namespace vexor {
class model;
}

namespace vexor_tool {

// Whether every clause of the file has a true literal. With max_sat that goes for the hard clauses, and the
// weights of the others that are violated must sum up to the model's cost at most. Uses nothing of the search
// but its values, so that a clause that was lost or changed on its way into the search is found out.
bool satisfies_file(vexor::model const& m, std::istream& in, char const* file_name, bool max_sat);

} // namespace vexor_tool
