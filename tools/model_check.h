// The proof of a satisfiable answer: the file once more, each clause against the model.
#pragma once

#include <istream>

namespace vexor {
class model;
}

namespace vexor_tool {

// Whether every clause of the file has a true literal. Uses nothing of the search but its values, so that a
// clause that was lost or changed on its way into the search is found out.
bool satisfies_file(vexor::model const& m, std::istream& in, char const* file_name);

} // namespace vexor_tool
