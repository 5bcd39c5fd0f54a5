/* vexor: the full interface.
 *
 * A program builds terms call by call, asserts them, and asks whether they can hold together:
 *
 *     #include <stdio.h>
 *     #include <vexor.h>
 *
 *     int main(void) {
 *         vexor_context ctx = vexor_mk_context();
 *         vexor_expr x = vexor_mk_bool_var(ctx, "x");
 *         vexor_assert(ctx, vexor_mk_not(ctx, x));
 *         if (vexor_check(ctx) == 1) vexor_display_model(vexor_get_model(ctx));
 *         vexor_del_context(ctx);
 *         return 0;
 *     }
 *
 * prints "(= x false)". docs/api.md is the guide. What holds for all functions:
 *
 * Threads. One thread at a time may be in the library for a whole process: settings, the log file and the
 * search callback are process-wide. vexor_interrupt alone may be called at any time, from any thread and from
 * signal handlers.
 *
 * Lifetime of terms. Expressions, types and declarations belong to the context that made them; a caller never
 * releases one. They live until the vexor_pop of the scope in which they were made, vexor_reset or
 * vexor_del_context, whichever comes first; their use afterwards is undefined. Terms of two contexts must not
 * be mixed. A debug build of the library tells the use of a term whose scope was popped and ends the
 * process.
 *
 * Pointers. No pointer argument may be null, unless its function says otherwise. Texts end with a zero byte
 * and are copied; so are arrays. A null pointer, a handle of another context, a pop without a push and, from
 * a callback, a call with a context or model other than vexor_interrupt end the process (abort) with a
 * message on the error stream that names the function.
 *
 * Failures. What the library refuses - a name that is defined already, an application without arguments, an
 * assertion that is not Boolean or needs what no solver here decides, with the type checker on an ill-typed
 * formula - is a C++ exception of a class derived from std::exception; what() tells what is wrong. It passes
 * through the C interface: a C++ caller catches std::exception, and C frames in between must be compiled with
 * -fexceptions. In a program of C alone nothing catches it, and the process ends by std::terminate. A call
 * that fails leaves the context as it was before.
 */
#ifndef VEXOR_H
#define VEXOR_H

#include <stdint.h>

/* Define VEXOR_WITH_GMP before including this header, or include gmp.h before it, for the functions with
 * GMP's numbers. */
#ifdef VEXOR_WITH_GMP
#include <gmp.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

#ifndef VEXOR_DLLSPEC
#if defined(__GNUC__)
#define VEXOR_DLLSPEC __attribute__((visibility("default")))
#else
#define VEXOR_DLLSPEC
#endif
#endif

/* Weights and costs. */
typedef int64_t vexor_int64;

/* --- Handles. */

/* A logical context: what is declared and asserted, with its scopes. */
typedef struct vexor_context_record* vexor_context;
/* The values of the last satisfiable answer of a context. Valid until the next assertion, retraction,
 * question, pop or reset of its context. */
typedef struct vexor_model_record* vexor_model;
/* A term or formula. */
typedef struct vexor_expr_record* vexor_expr;
/* A type of terms. */
typedef struct vexor_type_record* vexor_type;
/* A declared name: what a variable or function stands for, as opposed to a use of it in a term. */
typedef struct vexor_var_decl_record* vexor_var_decl;
/* A walk over the Boolean variables of a context. */
typedef struct vexor_var_decl_iterator_record* vexor_var_decl_iterator;
/* The number of a retractable or weighted assertion; above 0. */
typedef int assertion_id;
/* A truth value or the answer to a question: 1 true (satisfiable), -1 false (unsatisfiable), 0 undefined
 * (unknown). */
typedef int lbool;

/* What the search callback is told. */
typedef struct search_data {
    int model_available;   /* 1 if a model was found already (by vexor_max_sat), else 0 */
    vexor_int64 cost;      /* its cost, as vexor_get_cost tells it; 0 without a model */
    int maxsat_iterations; /* searches of the present or last vexor_max_sat */
    int conflicts;         /* of the context since it was made or reset; counts stop at the greatest int */
    int decisions;
    int restarts;
    int propagations;
} search_data;

/* Answers 0 to stop the search and anything else to go on. The record is the library's and valid during the
 * call. The callback must not call the library, but for vexor_interrupt. */
typedef int (*vexor_search_callback)(search_data* data);

/* --- Settings of the process. */

/* How much progress output goes to the error stream: 0, the default, is silent; negative values mean 0. */
VEXOR_DLLSPEC void vexor_set_verbosity(int level);

/* The version of the library, for example "0.1.0". The text lives as long as the process. */
VEXOR_DLLSPEC const char* vexor_version(void);

/* Writes what is done from now on to the named file, of all contexts of this interface, as commands of the
 * native language, each on a line: a declaration behind its call, everything else before its call begins, so
 * that the file of a process that crashed can be executed to the same point. It holds declarations,
 * assertions, retractions, scopes, resets and the questions vexor_check and vexor_max_sat. An existing file
 * is emptied.
 *
 * A call that raises an exception stays as a comment. Names that the language does not know as names are
 * written as log!1, log!2, ..., with the name as a comment in front of their declaration.
 *
 * Only the first call in a process has an effect. A file that cannot be opened is not reported. */
VEXOR_DLLSPEC void vexor_enable_log_file(const char* file_name);

/* Turns the type checker on (flag not 0) or off (0, the default). With it on, ill-typed declarations and
 * assertions raise an exception; without it they may be refused later, or be taken as they come. */
VEXOR_DLLSPEC void vexor_enable_type_checker(int flag);

/* Tells that only Boolean combinations of linear arithmetic constraints will be asserted (flag not 0), which
 * makes them faster to decide; 0, the default, takes it back. To be set before the first assertion. */
VEXOR_DLLSPEC void vexor_set_arith_only(int flag);

/* Conflicts that vexor_max_sat spends on one search, once it has a model, before it restarts; default 10000.
 */
VEXOR_DLLSPEC void vexor_set_max_num_conflicts_in_maxsat_iteration(unsigned max);

/* Improvements of its model that vexor_max_sat looks for before it gives up; default 10000. */
VEXOR_DLLSPEC void vexor_set_max_num_iterations_in_maxsat(unsigned max);

/* Lets every later vexor_max_sat look for models of at most this cost first, until vexor_max_sat_cost_leq. */
VEXOR_DLLSPEC void vexor_set_maxsat_initial_cost(vexor_int64 cost);

/* --- Contexts and scopes. */

/* Creates an empty context. Result: never null; the caller destroys it by vexor_del_context. */
VEXOR_DLLSPEC vexor_context vexor_mk_context(void);

/* Destroys a context with all its terms, types and declarations. */
VEXOR_DLLSPEC void vexor_del_context(vexor_context ctx);

/* Forgets everything: assertions, scopes, declarations and terms. Every handle of the context is dead. */
VEXOR_DLLSPEC void vexor_reset(vexor_context ctx);

/* Opens a scope: vexor_pop will forget what is declared and asserted from now on. Works on an inconsistent
 * context as well, and its pop does not forget the inconsistency. */
VEXOR_DLLSPEC void vexor_push(vexor_context ctx);

/* Closes the newest scope. All handles made in it are dead. There must be one: see "Pointers" above. */
VEXOR_DLLSPEC void vexor_pop(vexor_context ctx);

/* Prints variables, clauses and assignment of the context to standard output, for the developer's eye. */
VEXOR_DLLSPEC void vexor_dump_context(vexor_context ctx);

/* Whether the assertions of the context were found to be contradictory already: 1 or 0. 0 does not mean that
 * they are satisfiable; vexor_check decides that. */
VEXOR_DLLSPEC int vexor_inconsistent(vexor_context ctx);

/* Ends the search that runs on the context, if any, as soon as its loops notice; its answer is 0 then, unless
 * it was just found. May be called at any time, from any thread and from a signal handler, as long as the
 * context exists. Without a search nothing happens, and the next question works. */
VEXOR_DLLSPEC void vexor_interrupt(vexor_context ctx);

/* Has callback called now and then during searches on the context (every 5000 conflicts).
 *
 * There is one callback for the whole process: setting another one, also for another context, replaces it for
 * all contexts that have one. */
VEXOR_DLLSPEC void vexor_set_search_callback(vexor_context ctx, vexor_search_callback callback);

/* No callback for searches on the context any more. */
VEXOR_DLLSPEC void vexor_remove_search_callback(vexor_context ctx);

/* --- Assertions and questions. */

/* Asserts the formula e in the newest scope. On an inconsistent context nothing happens. A term that is not
 * Boolean raises an exception, here and in the two functions below. */
VEXOR_DLLSPEC void vexor_assert(vexor_context ctx, vexor_expr e);

/* The same, and e can be retracted. Result: the id for vexor_retract and vexor_get_assertion_value. */
VEXOR_DLLSPEC assertion_id vexor_assert_retractable(vexor_context ctx, vexor_expr e);

/* The same, and vexor_max_sat may give e up at the price of the weight, which is above 0: another one raises
 * an exception. vexor_check takes e for required. */
VEXOR_DLLSPEC assertion_id vexor_assert_weighted(vexor_context ctx, vexor_expr e, vexor_int64 weight);

/* Withdraws a retractable or weighted assertion, until the pop of the newest scope. An id of no assertion
 * that is alive is ignored. */
VEXOR_DLLSPEC void vexor_retract(vexor_context ctx, assertion_id id);

/* Whether the assertions can hold together: 1 yes (vexor_get_model has the values), -1 no
 * (vexor_get_unsat_core tells which retractable ones are to blame), 0 if the search was interrupted or is
 * incomplete. */
VEXOR_DLLSPEC lbool vexor_check(vexor_context ctx);

/* Looks for values that satisfy all assertions but some weighted ones whose weights have the least sum.
 *
 * Result: 1 with a best model, whose vexor_get_cost is that sum; -1 if the assertions without weight cannot
 * hold together; 0 if it was interrupted or gave up: vexor_get_model has the best model found, if any. */
VEXOR_DLLSPEC lbool vexor_max_sat(vexor_context ctx);

/* The same, looking for models of at most the given cost first: a good guess saves time, a wrong one costs
 * only time. Forgets the cost of vexor_set_maxsat_initial_cost. */
VEXOR_DLLSPEC lbool vexor_max_sat_cost_leq(vexor_context ctx, vexor_int64 max_cost);

/* Looks for one model in which weighted assertions may fail, preferring that they hold, without any attempt
 * at the best. random not 0: the other decisions come in a random order. Result as of vexor_check. */
VEXOR_DLLSPEC lbool vexor_find_weighted_model(vexor_context ctx, int random);

/* The retractable assertions that the last vexor_check found contradictory together with the plain ones.
 *
 * Writes at most max ids to ids, which may be null if max is 0. Result: the number of all of them; 0 after
 * any answer but -1, and when no retractable one was needed. The core is not always the smallest: it may name
 * some even if the plain assertions alone are contradictory. */
VEXOR_DLLSPEC unsigned vexor_get_unsat_core(vexor_context ctx, assertion_id* ids, unsigned max);

/* --- Models. Their getters give 0 and leave their output arguments alone where there is no such value. */

/* The model of the last question, null if there is none. */
VEXOR_DLLSPEC vexor_model vexor_get_model(vexor_context ctx);

/* Prints the values of the declared variables to standard output, as "(= name value)", one a line. */
VEXOR_DLLSPEC void vexor_display_model(vexor_model m);

/* The value of a Boolean variable; 0 if the model leaves it open, which is so too for one that occurs
 * nowhere. */
VEXOR_DLLSPEC lbool vexor_get_value(vexor_model m, vexor_var_decl d);

/* 1 if the assertion of that id was in force or, for a weighted one, satisfied in the model, else 0. */
VEXOR_DLLSPEC int vexor_get_assertion_value(vexor_model m, assertion_id id);

/* The value of a numeric variable: 1 and *value if it is an integer in the range of a long, else 0. */
VEXOR_DLLSPEC int vexor_get_int_value(vexor_model m, vexor_var_decl d, long* value);

/* 1 and *num / *den, reduced and with *den above 0, if both are in the range of a long, else 0. */
VEXOR_DLLSPEC int vexor_get_arith_value(vexor_model m, vexor_var_decl d, long* num, long* den);

/* 1 and the double next to the value, cut towards zero, else 0. */
VEXOR_DLLSPEC int vexor_get_double_value(vexor_model m, vexor_var_decl d, double* value);

#ifdef __GNU_MP_VERSION
/* 1 and the value, if it is an integer, else 0. The caller has initialized value. */
VEXOR_DLLSPEC int vexor_get_mpz_value(vexor_model m, vexor_var_decl d, mpz_ptr value);

/* 1 and the value, else 0. The caller has initialized value. */
VEXOR_DLLSPEC int vexor_get_mpq_value(vexor_model m, vexor_var_decl d, mpq_ptr value);
#endif

/* The value of a bit-vector variable: 1 and its first n bits, least significant first, each 0 or 1 in an int
 * of bits; bits behind its size are 0. Else 0. n is not negative. */
VEXOR_DLLSPEC int vexor_get_bitvector_value(vexor_model m, vexor_var_decl d, int n, int* bits);

/* Whether the formula e is true (1) or false (-1) in the model; 0 if the model does not tell. */
VEXOR_DLLSPEC lbool vexor_evaluate_in_model(vexor_model m, vexor_expr e);

/* The weight of the assertions that the model gives up; -1 if no cost was computed. A cost of more than 64
 * bits gives the greatest number. */
VEXOR_DLLSPEC vexor_int64 vexor_get_cost(vexor_model m);

/* The same as a double. */
VEXOR_DLLSPEC double vexor_get_cost_as_double(vexor_model m);

/* --- Names. */

/* A walk over the declarations that are Boolean variables of the context's search, in the order of their
 * creation there: those that occur in assertions. To be deleted by vexor_del_iterator. It sees variables that
 * come while it walks; after a vexor_pop or vexor_reset it must be reset first. */
VEXOR_DLLSPEC vexor_var_decl_iterator vexor_create_var_decl_iterator(vexor_context ctx);

/* 1 if the walk is not at its end, else 0. */
VEXOR_DLLSPEC int vexor_iterator_has_next(vexor_var_decl_iterator it);

/* The next declaration; null at the end of the walk. */
VEXOR_DLLSPEC vexor_var_decl vexor_iterator_next(vexor_var_decl_iterator it);

/* Back to the beginning. */
VEXOR_DLLSPEC void vexor_iterator_reset(vexor_var_decl_iterator it);

VEXOR_DLLSPEC void vexor_del_iterator(vexor_var_decl_iterator it);

/* The declaration that the expression is a use of; null if it is no name. */
VEXOR_DLLSPEC vexor_var_decl vexor_get_var_decl(vexor_expr e);

/* The declaration's name. The text lives as long as the process. */
VEXOR_DLLSPEC const char* vexor_get_var_decl_name(vexor_var_decl d);

/* The declaration of that name in the context, null if there is none. */
VEXOR_DLLSPEC vexor_var_decl vexor_get_var_decl_from_name(vexor_context ctx, const char* name);

/* --- Types. No constructor below checks types, unless vexor_enable_type_checker says so: an ill-typed term
 * is told when it is asserted, if at all. */

/* The type of that name: "bool", "int", "nat" or "real", one that was made before, or else a new type without
 * interpretation. */
VEXOR_DLLSPEC vexor_type vexor_mk_type(vexor_context ctx, const char* name);

/* Functions from n >= 1 arguments of the types domain[0], ... to range. n of 0 raises an exception. */
VEXOR_DLLSPEC vexor_type vexor_mk_function_type(vexor_context ctx, const vexor_type domain[], unsigned n,
                                                vexor_type range);

/* Vectors of size bits, 1 to 2^24; another size raises an exception. */
VEXOR_DLLSPEC vexor_type vexor_mk_bitvector_type(vexor_context ctx, unsigned size);

/* Tuples of n >= 1 components, of the types *types[0], *types[1], ... n of 0 raises an exception. */
VEXOR_DLLSPEC vexor_type vexor_mk_tuple_type(vexor_context ctx, vexor_type* types[], unsigned n);

/* --- Variables. A name may be any text. One that is in use raises an exception. */

VEXOR_DLLSPEC vexor_var_decl vexor_mk_bool_var_decl(vexor_context ctx, const char* name);
VEXOR_DLLSPEC vexor_var_decl vexor_mk_var_decl(vexor_context ctx, const char* name, vexor_type type);

/* A use of a declaration as a term. */
VEXOR_DLLSPEC vexor_expr vexor_mk_var_from_decl(vexor_context ctx, vexor_var_decl d);
VEXOR_DLLSPEC vexor_expr vexor_mk_bool_var_from_decl(vexor_context ctx, vexor_var_decl d);

/* A use of the Boolean variable of that name, which is declared if the name is not in use. A name that stands
 * for something else, another type of variable or an operator, raises an exception. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bool_var(vexor_context ctx, const char* name);

/* A new Boolean variable with a name of its own: "v!1", "v!2", ... */
VEXOR_DLLSPEC vexor_expr vexor_mk_fresh_bool_var(vexor_context ctx);

/* --- Constants. */

/* The same handle at each call, alive as long as the context, until vexor_reset. */
VEXOR_DLLSPEC vexor_expr vexor_mk_true(vexor_context ctx);
VEXOR_DLLSPEC vexor_expr vexor_mk_false(vexor_context ctx);

VEXOR_DLLSPEC vexor_expr vexor_mk_num(vexor_context ctx, int n);

/* A rational number from decimal text: "n", "n/d" or "n.f", with a sign or not. The number ends at the first
 * character that cannot belong to it; no digits mean 0. A denominator of 0 raises an exception. */
VEXOR_DLLSPEC vexor_expr vexor_mk_num_from_string(vexor_context ctx, const char* text);

#ifdef __GNU_MP_VERSION
VEXOR_DLLSPEC vexor_expr vexor_mk_num_from_mpz(vexor_context ctx, mpz_srcptr n);
/* Need not be canonical; a denominator of 0 raises an exception. */
VEXOR_DLLSPEC vexor_expr vexor_mk_num_from_mpq(vexor_context ctx, mpq_srcptr n);
#endif

/* The value modulo 2^size as a bit-vector constant; size from 1 to 2^24, or an exception. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_constant(vexor_context ctx, unsigned size, unsigned value);

/* The same from size bits, least significant first, an int that is not 0 for each bit that is 1. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_constant_from_array(vexor_context ctx, unsigned size, const int bits[]);

/* --- Operators. n of 0 arguments raises an exception. */

VEXOR_DLLSPEC vexor_expr vexor_mk_or(vexor_context ctx, const vexor_expr args[], unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_and(vexor_context ctx, const vexor_expr args[], unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_not(vexor_context ctx, vexor_expr a);
/* Of formulas: their equivalence and exclusive or. */
VEXOR_DLLSPEC vexor_expr vexor_mk_eq(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_diseq(vexor_context ctx, vexor_expr a, vexor_expr b);
/* If c then t else e, of formulas and of terms of any type. */
VEXOR_DLLSPEC vexor_expr vexor_mk_ite(vexor_context ctx, vexor_expr c, vexor_expr t, vexor_expr e);

/* Arithmetic: sum; args[0] minus all others; product; comparisons. */
VEXOR_DLLSPEC vexor_expr vexor_mk_sum(vexor_context ctx, const vexor_expr args[], unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_sub(vexor_context ctx, const vexor_expr args[], unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_mul(vexor_context ctx, const vexor_expr args[], unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_lt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_le(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_gt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_ge(vexor_context ctx, vexor_expr a, vexor_expr b);

/* Bit-vectors of one size, modulo 2^size. Concatenation puts a in front, at the most significant end. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_add(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_sub(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_mul(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_minus(vexor_context ctx, vexor_expr a);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_concat(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_and(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_or(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_xor(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_not(vexor_context ctx, vexor_expr a);

/* Bits from index high down to index low of a, counted from 0 at the least significant bit; the two may also
 * be given the other way around. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_extract(vexor_context ctx, unsigned high, unsigned low, vexor_expr a);

/* n more bits in front, copies of the sign. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_sign_extend(vexor_context ctx, vexor_expr a, unsigned n);

/* Shifts by n places: to the left or right, filling with zeros, ones or (righta) copies of the sign. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_shift_left0(vexor_context ctx, vexor_expr a, unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_shift_left1(vexor_context ctx, vexor_expr a, unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_shift_right0(vexor_context ctx, vexor_expr a, unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_shift_right1(vexor_context ctx, vexor_expr a, unsigned n);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_shift_righta(vexor_context ctx, vexor_expr a, unsigned n);

/* Comparisons of bit-vectors, as unsigned and (slt, sle, sgt, sge) as signed numbers. */
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_lt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_le(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_gt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_ge(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_slt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_sle(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_sgt(vexor_context ctx, vexor_expr a, vexor_expr b);
VEXOR_DLLSPEC vexor_expr vexor_mk_bv_sge(vexor_context ctx, vexor_expr a, vexor_expr b);

/* --- Other terms. */

/* The function f applied to n >= 1 arguments. */
VEXOR_DLLSPEC vexor_expr vexor_mk_app(vexor_context ctx, vexor_expr f, const vexor_expr args[], unsigned n);

/* The function that equals f but for the value at the n >= 1 arguments. */
VEXOR_DLLSPEC vexor_expr vexor_mk_function_update(vexor_context ctx, vexor_expr f, const vexor_expr args[],
                                                  unsigned n, vexor_expr value);

/* The tuple of n >= 1 components. */
VEXOR_DLLSPEC vexor_expr vexor_mk_tuple_literal(vexor_context ctx, const vexor_expr args[], unsigned n);

#ifdef __cplusplus
}
#endif

#endif /* VEXOR_H */
