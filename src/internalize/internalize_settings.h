// Settings of the translation of formulas.
#pragma once

namespace vexor {

// Assertions are simplified with the context's memory of lifted term-ites.
extern bool g_cache_ite; // default: true
// Formulas are Boolean combinations of arithmetic alone; functions are not looked for.
extern bool g_arithmetic_only; // default: false
// Arithmetic may drop what it needs for incremental use once a search begins.
extern bool g_fire_and_forget; // default: false

} // namespace vexor
