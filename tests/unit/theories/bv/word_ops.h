// Every operator on vectors, as a circuit and as its definition on words.
#pragma once

#include "support/word_values.h"
#include "theories/bv/circuits.h"

#include <functional>
#include <string>
#include <vector>

namespace vexor_test {

// Widths of words are below 32, so that nothing in the definitions overflows.
struct word_op {
    std::string m_name;
    unsigned m_arity;
    std::function<vexor::bits(vexor::circuits&, vexor::bits const&, vexor::bits const&)> m_circuit;
    std::function<word(word, word, unsigned width)> m_value; // cut to the width of the result afterwards
};

std::vector<word_op> all_word_ops();
// The same with a number: shifts, rotations, extensions, repetitions, extractions. The width is the one of the
// argument.
std::vector<word_op> indexed_word_ops(unsigned width);

} // namespace vexor_test
