#include "c_frame.h"

int (*c_callback_action)(void);

int through_c(int (*action)(void*), void* data) {
    /* Behind the call there is something to do, or it would be no frame. */
    int const result = action(data);
    return result + 1 - 1;
}

int c_callback(struct search_data* data) { return data && c_callback_action(); }
