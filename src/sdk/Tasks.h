#pragma once

/* Work that doesn't keep the window waiting: timers, and requests whose answers come later.
 *
 * `context` is CorvaneHost's. Everything is called back on the main thread, never from inside the entry that
 * asked for it. When the plug-in object is destroyed, what it has asked for is cancelled: nothing is called
 * back from then on. Main thread, but for `post`.
 */

#include "Objects.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What is called back: `data` is what was passed with it. */
typedef void (*CorvaneTask)(void* data);

/* An answer: `reply` and `error` as the entry of the same name in Directory.h has them. Both are borrowed for
 * the length of the call, and may be null. */
typedef void (*CorvaneCompletion)(void* data, CorvaneObject* reply, CorvaneObject* error);

typedef struct CorvaneTasks {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* Calls `task` soon, on the main thread, after what was posted before. May be called from any thread;
     * one that isn't the main thread must have ended, or must no longer call it, when the plug-in object
     * is destroyed. */
    void (*post)(void* context, CorvaneTask task, void* data);
    /* Calls `task` after that many seconds; once, or again and again until it is cancelled. The answer is a
     * number for `cancel`, never 0; 0 when there can't be a timer. */
    uint64_t (*startTimer)(void* context, double seconds, int8_t repeats, CorvaneTask task, void* data);

    /* As in Directory.h, but the service is asked in the background, one request after the other, and
     * `completion` gets the answer, or an error where `node` isn't one. What is passed in is copied or
     * retained. The answer is a number for `cancel`, never 0; on 0, as without a `completion`, nothing was
     * begun, and nothing will be called. */
    uint64_t (*customCall)(void* context, CorvaneObject* node, int32_t code, const void* request,
                           uint64_t length, CorvaneCompletion completion, void* data);
    uint64_t (*customCallSendPropertyList)(void* context, CorvaneObject* node, int32_t code,
                                           const CorvaneObject* propertyList, const uint8_t authorization[32],
                                           CorvaneCompletion completion, void* data);
    uint64_t (*records)(void* context, CorvaneObject* node, const char* recordType, const char* name,
                        CorvaneObject* attributes, uint32_t maximum, CorvaneCompletion completion,
                        void* data);

    /* Nothing is called back for this number from here on. A request that waits for others isn't
     * sent; one that was sent already may still have its effect. Numbers that aren't known, 0 among them, are
     * ignored. */
    void (*cancel)(void* context, uint64_t number);
} CorvaneTasks;

#ifdef __cplusplus
}
#endif
