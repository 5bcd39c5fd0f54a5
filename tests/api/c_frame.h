/* A frame of C between two frames of C++. */
#ifndef VEXOR_TESTS_C_FRAME_H
#define VEXOR_TESTS_C_FRAME_H

#ifdef __cplusplus
extern "C" {
#endif

/* Calls action(data) and answers what it answers. */
int through_c(int (*action)(void*), void* data);
/* The search callback: hands over to the action set last. */
extern int (*c_callback_action)(void);

struct search_data;
int c_callback(struct search_data* data);

#ifdef __cplusplus
}
#endif

#endif
