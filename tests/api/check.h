/* Checks of the C programs: a failed one is printed and counted, and the program goes on. */
#ifndef VEXOR_TESTS_CHECK_H
#define VEXOR_TESTS_CHECK_H

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int num_failures = 0;

#define CHECK(condition) check((condition) != 0, #condition, __LINE__)

static inline void check(int holds, const char* condition, int line) {
    if (holds) return;
    printf("line %d: %s does not hold\n", line, condition);
    ++num_failures;
}

/* The file's text, in a buffer that the next call uses again; empty if there is no such file. */
static inline const char* contents(const char* file_name) {
    static char text[1 << 16];
    size_t length = 0;
    FILE* f = fopen(file_name, "rb");
    if (f) {
        length = fread(text, 1, sizeof text - 1, f);
        fclose(f);
    }
    text[length] = '\0';
    return text;
}

/* Whether the file holds exactly the text. */
static inline int file_holds(const char* file_name, const char* expected) {
    if (strcmp(contents(file_name), expected) == 0) return 1;
    printf("%s holds:\n%s", file_name, contents(file_name));
    return 0;
}

static inline int file_begins(const char* file_name, const char* expected) {
    if (strncmp(contents(file_name), expected, strlen(expected)) == 0) return 1;
    printf("%s holds:\n%s", file_name, contents(file_name));
    return 0;
}

#endif
