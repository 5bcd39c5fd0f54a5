/* A C program on the lite interface: every function, and what happens when a command fails.
 *
 * lite_test FOLDER: writes its output and log files there. */
#define _POSIX_C_SOURCE 200809L
#define _DEFAULT_SOURCE

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include "vexor_lite.h"

static int num_failures = 0;

#define CHECK(condition) check((condition) != 0, #condition, __LINE__)

static void check(int holds, const char* condition, int line) {
    if (holds) return;
    printf("line %d: %s does not hold\n", line, condition);
    ++num_failures;
}

static char path_buffer[4096];

static const char* path(const char* folder, const char* name) {
    snprintf(path_buffer, sizeof path_buffer, "%s/%s", folder, name);
    return path_buffer;
}

/* The file's text, in a buffer that the next call uses again; null if there is no such file. */
static const char* contents(const char* file_name) {
    static char text[1 << 16];
    size_t length;
    FILE* f = fopen(file_name, "rb");
    if (!f) return NULL;
    length = fread(text, 1, sizeof text - 1, f);
    text[length] = '\0';
    fclose(f);
    return text;
}

static int file_holds(const char* folder, const char* name, const char* expected) {
    const char* text = contents(path(folder, name));
    if (text && strcmp(text, expected) == 0) return 1;
    printf("%s holds: %s\n", name, text ? text : "(no file)");
    return 0;
}

static void results(const char* folder) {
    vexorl_context ctx = vexorl_mk_context();
    CHECK(ctx != NULL);
    vexorl_set_output_file(path(folder, "results.txt"));
    CHECK(vexorl_inconsistent(ctx) == 0);
    CHECK(vexorl_read(ctx, "") == 1);
    CHECK(vexorl_read(ctx, "(define x::bool) (assert x) (check)") == 1);
    CHECK(file_holds(folder, "results.txt", "sat\n"));
    CHECK(vexorl_inconsistent(ctx) == 0);
    /* That a formula is unsatisfiable is a result, not a failure. */
    CHECK(vexorl_read(ctx, "(assert (not x))") == 1);
    CHECK(vexorl_inconsistent(ctx) == 1);
    CHECK(vexorl_read(ctx, "(status) (reset) (status)") == 1);
    CHECK(vexorl_inconsistent(ctx) == 0);
    CHECK(file_holds(folder, "results.txt", "sat\nunsat\nunsat\nok\n"));
    /* Another file, and the first one again, which is emptied. */
    vexorl_set_output_file(path(folder, "other.txt"));
    CHECK(vexorl_read(ctx, "(echo \"other\")") == 1);
    CHECK(file_holds(folder, "other.txt", "other"));
    CHECK(file_holds(folder, "results.txt", "sat\nunsat\nunsat\nok\n"));
    vexorl_set_output_file(path(folder, "results.txt"));
    CHECK(file_holds(folder, "results.txt", ""));
    /* A file that cannot be opened swallows the results, and nothing is reported. */
    vexorl_set_output_file("/no/such/folder/file");
    CHECK(vexorl_read(ctx, "(echo \"lost\")") == 1);
    CHECK(file_holds(folder, "results.txt", ""));
    vexorl_set_output_file(path(folder, "results.txt"));
    vexorl_del_context(ctx);
}

static void failures(const char* folder) {
    char first[256];
    vexorl_context ctx = vexorl_mk_context();
    vexorl_set_output_file(path(folder, "failures.txt"));
    CHECK(strcmp(vexorl_get_last_error_message(), "") == 0);
    CHECK(vexorl_read(ctx, "(define p::bool) (echo \"before\") (assert p) (assert q) (echo \"behind\")") == 0);
    CHECK(strcmp(vexorl_get_last_error_message(),
                 "[<string>, line(1), column(53), position(52)]: Undefined name \"q\".") == 0);
    snprintf(first, sizeof first, "%s", vexorl_get_last_error_message());
    CHECK(file_holds(folder, "failures.txt", "before"));
    /* What preceded the failure holds, the context works on, and success keeps the text. */
    CHECK(vexorl_read(ctx, "(check)") == 1);
    CHECK(strcmp(vexorl_get_last_error_message(), first) == 0);
    CHECK(vexorl_read(ctx, "(assert (not p))") == 1);
    CHECK(vexorl_inconsistent(ctx) == 1);
    CHECK(file_holds(folder, "failures.txt", "beforesat\nunsat\n"));
    /* Faults of each kind are results of the call. */
    CHECK(vexorl_read(ctx, "(reset) (check") == 0);
    CHECK(strcmp(vexorl_get_last_error_message(),
                 "[<string>, line(1), column(15), position(14)]: "
                 "Unexpected token '(end-of-stream)'. ')' expected.") == 0);
    CHECK(vexorl_read(ctx, "(include \"/no/such/file\")") == 0);
    CHECK(strcmp(vexorl_get_last_error_message(),
                 "[<string>, line(1), column(1), position(0)]: Error opening file /no/such/file") == 0);
    CHECK(vexorl_read(ctx, "(define i::int) (assert (> i 0))") == 0);
    CHECK(strstr(vexorl_get_last_error_message(), "feature not supported: ") != NULL);
    CHECK(vexorl_read(ctx, "(check)") == 1);
    vexorl_del_context(ctx);
}

static void log_file(const char* folder) {
    vexorl_context ctx = vexorl_mk_context();
    vexorl_context other = vexorl_mk_context();
    CHECK(vexorl_read(ctx, "(echo \"not in the log\")") == 1);
    vexorl_enable_log_file(path(folder, "log.vx"));
    CHECK(file_holds(folder, "log.vx", ""));
    CHECK(vexorl_read(ctx, "(define x::bool)") == 1);
    CHECK(vexorl_read(ctx, "(assert y)") == 0);
    CHECK(file_holds(folder, "log.vx", "(define x::bool)\n(assert y)\n"));
    CHECK(vexorl_read(other, "(check)\n(status)") == 1);
    CHECK(file_holds(folder, "log.vx", "(define x::bool)\n(assert y)\n(check)\n(status)\n"));
    /* Only the first call has an effect. */
    vexorl_enable_log_file(path(folder, "log2.vx"));
    CHECK(contents(path(folder, "log2.vx")) == NULL);
    CHECK(vexorl_read(ctx, "(status)") == 1);
    CHECK(file_holds(folder, "log.vx", "(define x::bool)\n(assert y)\n(check)\n(status)\n(status)\n"));
    vexorl_del_context(other);
    vexorl_del_context(ctx);
}

static void type_checker(void) {
    vexorl_context ctx = vexorl_mk_context();
    CHECK(vexorl_read(ctx, "(define p::bool)") == 1);
    CHECK(vexorl_read(ctx, "(assert (or true (+ p 1)))") == 1);
    vexorl_enable_type_checker(7);
    CHECK(vexorl_read(ctx, "(assert (or true (+ p 1)))") == 0);
    vexorl_enable_type_checker(0);
    CHECK(vexorl_read(ctx, "(assert (or true (+ p 1)))") == 1);
    vexorl_del_context(ctx);
}

/* Names and assertions of one context are none of another's. */
static void two_contexts(const char* folder) {
    vexorl_context a = vexorl_mk_context();
    vexorl_context b = vexorl_mk_context();
    vexorl_set_output_file(path(folder, "two.txt"));
    CHECK(vexorl_read(a, "(define x::bool) (assert x)") == 1);
    CHECK(vexorl_read(b, "(assert x)") == 0);
    CHECK(vexorl_read(b, "(define x::bool) (assert (not x)) (check)") == 1);
    CHECK(vexorl_read(a, "(check)") == 1);
    vexorl_del_context(a);
    CHECK(vexorl_read(b, "(check) (define d::int (div 7 2))") == 1);
    CHECK(file_holds(folder, "two.txt", "sat\nsat\nsat\n"));
    vexorl_del_context(b);
}

static void the_rest(void) {
    const char* version = vexorl_version();
    CHECK(version != NULL && version[0] >= '0' && version[0] <= '9' && strchr(version, '.') != NULL);
    vexorl_set_verbosity(-5);
    vexorl_set_verbosity(0);
}

/* The command exit ends the process with code 0, its output complete and its exit handlers run. */
static const char* exit_mark;

/* The context is alive on purpose when the command ends the process: nobody is to look for leaks after that. */
static void at_end(int code, void* unused) {
    FILE* f = fopen(exit_mark, "w");
    (void)unused;
    if (f) fclose(f);
    _exit(code);
}

static void exit_command(const char* folder) {
    int status = -1;
    char mark[4096];
    pid_t child;
    snprintf(mark, sizeof mark, "%s/exit_handler_ran", folder);
    remove(mark);
    fflush(stdout);
    child = fork();
    if (child == 0) {
        vexorl_context ctx = vexorl_mk_context();
        exit_mark = mark;
        on_exit(at_end, NULL);
        vexorl_set_output_file(path(folder, "exit.txt"));
        vexorl_read(ctx, "(define p::bool) (assert p) (check) (exit) (echo \"no\")");
        _exit(3);
    }
    CHECK(child > 0 && waitpid(child, &status, 0) == child);
    CHECK(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    CHECK(file_holds(folder, "exit.txt", "sat\n"));
    CHECK(contents(mark) != NULL);
}

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    remove(path(argv[1], "log2.vx"));
    failures(argv[1]);
    results(argv[1]);
    two_contexts(argv[1]);
    type_checker();
    the_rest();
    exit_command(argv[1]);
    log_file(argv[1]);
    if (num_failures == 0) return 0;
    printf("%d checks failed\n", num_failures);
    return 1;
}
