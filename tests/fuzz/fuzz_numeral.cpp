// Numerals from arbitrary text: the first byte picks the base. Whatever is read is canonical, prints as text
// that reads as the same value, and obeys the laws of arithmetic together with the number that the rest of
// the text gives.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/exceptions.h"
#include "base/numeral.h"

using vexor::numeral;

static void require(bool condition) {
    if (!condition) std::abort();
}

static numeral read(std::string const& text, int base) {
    try {
        numeral result(text.c_str(), base);
        result.check_invariant();
        require(numeral(result.to_string().c_str(), 10) == result);
        return result;
    } catch (vexor::vexor_exception const&) {
        return numeral(7);
    }
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 2) return 0;
    int base = data[0] % 3 == 0 ? 10 : data[0] % 3 == 1 ? 2 : 16;
    std::string text(reinterpret_cast<char const*>(data + 1), size - 1);
    std::size_t cut = text.find(' ');
    numeral a = read(text.substr(0, cut), base);
    numeral b = cut == std::string::npos ? numeral(3) : read(text.substr(cut + 1), base);
    require((a + b) - b == a);
    require(a * b == b * a);
    require((a < b) + (b < a) + (a == b) == 1);
    require((a - b).is_neg() == (a < b));
    if (!b.is_zero()) require(a / b * b == a);
    numeral low = floor(a);
    require(low.is_int() && low <= a && a - low < numeral(1));
    require(ceil(a) == -floor(-a));
    if (a == b) require(a.hash() == b.hash());
    return 0;
}
