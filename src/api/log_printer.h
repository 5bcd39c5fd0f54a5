// The text of terms and types in the log.
#pragma once

#include "ast/print/pp_visitor.h"
#include "base/hash_table.h"
#include "base/ustring.h"

#include <string>

namespace vexor {

// How names are written. A name keeps its stand-in for the whole process: declarations of the same name in
// different scopes or contexts never stand beside each other.
class log_names {
public:
    // The name itself if the native language reads it as a name that is free.
    ustring written(ustring const& name);

private:
    hash_map<ustring, ustring, hash_ustring> m_known; // of all names met
    int m_num_stand_ins = 0;
};

// The node on one line, in a form that reads as a node of the same structure.
//
// The text repeats shared parts as long as that makes it at most a few times as long as the term has nodes;
// beyond that each shared part is bound by a let first, since text that repeats can be exponential.
std::string log_text(ast* node, log_names& names);

} // namespace vexor
