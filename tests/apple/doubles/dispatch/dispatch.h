#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// As much of the platform's queues as our layer uses: the main one, which a test turns by hand
/// (MainQueueDouble.hpp).
typedef struct dispatch_queue_s* dispatch_queue_t;
typedef void (*dispatch_function_t)(void* context);

dispatch_queue_t dispatch_get_main_queue(void);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);

#ifdef __cplusplus
}
#endif
