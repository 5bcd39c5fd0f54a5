/* vexor: the lite interface.
 *
 * The smallest way to use the solver from C. A program hands over commands of the native language as text
 * (see docs/language.md) and results come on a stream:
 *
 *     #include <stdio.h>
 *     #include <vexor_lite.h>
 *
 *     int main(void) {
 *         vexorl_context ctx = vexorl_mk_context();
 *         if (!vexorl_read(ctx, "(define x::bool) (assert (or x (not x))) (check)"))
 *             fputs(vexorl_get_last_error_message(), stderr);
 *         vexorl_del_context(ctx);
 *         return 0;
 *     }
 *
 * prints "sat". The interface is not for concurrent use: one thread at a time may be in it for a whole
 * process, and what it prints to and logs to is process-wide. Callbacks must not call back into the
 * library. A null pointer ends the process (abort) with a message on the error stream that names the function.
 */
#ifndef VEXOR_LITE_H
#define VEXOR_LITE_H

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

/* A logical context: what is declared and asserted, with its scopes. Created by vexorl_mk_context, destroyed
 * by vexorl_del_context. */
typedef void* vexorl_context;

/* Sets how much progress output goes to the error stream: 0, the default, is silent; negative values mean 0.
 */
VEXOR_DLLSPEC void vexorl_set_verbosity(int level);

/* The version of the library, for example "0.1.0". The text lives as long as the process. */
VEXOR_DLLSPEC const char* vexorl_version(void);

/* Turns the type checker on (flag not 0) or off (0, the default) for all contexts. With it on, ill-typed
 * input makes vexorl_read fail; without it, ill-typed input may be refused later, with less to tell, or be
 * taken as it comes. */
VEXOR_DLLSPEC void vexorl_enable_type_checker(int flag);

/* Creates an empty context, in which the integer functions div and mod are defined.
 *
 * Result: never null; owned by the caller, who destroys it by vexorl_del_context. If memory is out, the
 * process ends with "Memory exhausted..." on the error stream, or a C++ exception passes. */
VEXOR_DLLSPEC vexorl_context vexorl_mk_context(void);

/* Destroys a context and all that was declared in it. ctx must come from vexorl_mk_context, must not be null,
 * and must not be used afterwards. */
VEXOR_DLLSPEC void vexorl_del_context(vexorl_context ctx);

/* Whether the assertions of the context were found to be contradictory already: 1 or 0.
 *
 * 0 does not mean that they are satisfiable; the command (check) decides that. ctx must not be null. */
VEXOR_DLLSPEC int vexorl_inconsistent(vexorl_context ctx);

/* Executes the commands in text, in order, each as soon as it was read. Results go to the output file (see
 * vexorl_set_output_file; standard output at the start).
 *
 * ctx and text must not be null; text ends with a zero byte and is not kept.
 * Result: 1 if all commands were executed. 0 if one failed: vexorl_get_last_error_message tells why, the
 * commands before it stay in effect, those behind it were not executed, and the context remains usable. That
 * a context is inconsistent or a formula unsatisfiable is a result, not a failure. The command (exit) ends
 * the process. Must not be called while another call of the library is running. */
VEXOR_DLLSPEC int vexorl_read(vexorl_context ctx, const char* text);

/* Sends the results of commands, of all contexts, to the named file from now on. An existing file is emptied.
 *
 * The file stays open to the end of the process. A file that cannot be opened is not reported: results are
 * then lost. file_name must not be null and is not kept. */
VEXOR_DLLSPEC void vexorl_set_output_file(const char* file_name);

/* What the last failed call of vexorl_read found wrong, in the form
 *     [file, line(l), column(c), position(p)]: text
 * for faults with a place in the text. Empty before the first failure; a success does not clear it. The text
 * is valid until the next failure. */
VEXOR_DLLSPEC const char* vexorl_get_last_error_message(void);

/* Writes the text of every later vexorl_read, of all contexts, to the named file, each followed by a line
 * break, failing ones included, so that the file can be executed again. An existing file is emptied.
 *
 * Only the first call in a process has an effect. A file that cannot be opened is not reported. file_name
 * must not be null and is not kept. */
VEXOR_DLLSPEC void vexorl_enable_log_file(const char* file_name);

#ifdef __cplusplus
}
#endif

#endif /* VEXOR_LITE_H */
