#ifndef RULES_H
#define RULES_H

#include <vexor.h>

#ifdef __cplusplus
extern "C"
#endif
    void
    declare_twice(vexor_context ctx, const char* name);

#endif
