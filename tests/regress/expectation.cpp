#include "expectation.h"

#include <sstream>
#include <stdexcept>

namespace vexor_test {

namespace {

// The text behind "c KEY: ", if the line starts with it.
bool match(std::string const& line, std::string const& key, std::string& value) {
    std::string start = "c " + key + ": ";
    if (line.rfind(start, 0) != 0) return false;
    if (!value.empty()) throw std::runtime_error("two lines '" + start + "'");
    value = line.substr(start.size());
    if (!value.empty() && value.back() == '\r') value.pop_back();
    return true;
}

} // namespace

expectation read_expectation(std::string const& text) {
    expectation result;
    std::string line, options;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        if (match(line, "expect", result.answer) || match(line, "error", result.error)) continue;
        match(line, "options", options);
    }
    std::string const& answer = result.answer;
    if (!answer.empty() && answer != "sat" && answer != "unsat" && answer != "unknown" && answer != "error") {
        throw std::runtime_error("unknown expectation '" + answer + "'");
    }
    std::istringstream words(options);
    for (std::string word; words >> word;) result.options.push_back(word);
    return result;
}

} // namespace vexor_test
