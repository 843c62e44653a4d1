#pragma once

/* The host's formatters: what may be typed into a field, and what its text stands for. References as
 * described in Objects.h; texts are UTF-8. A plug-in asks `isPartialStringValid` before its field takes a
 * keystroke, and `objectValueForString` when the edit ends. Main thread. */

#include "Objects.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct CorvaneFormatters {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* May the field's text become `proposed`, where it is `original` now? A formatter that beeps when it
     * refuses has done so. True when `formatter` is none. */
    int8_t (*isPartialStringValid)(CorvaneObject* formatter, const char* proposed, const char* original);
    /* True when a text stands for a value, which `value` receives (null for a formatter's empty value). When
     * it is refused, `errorDescription` may receive a new string for the user, and `value` what the text
     * could be repaired to. What isn't written is null. Neither place may be null. */
    int8_t (*objectValueForString)(CorvaneObject* formatter, const char* text, CorvaneObject** value,
                                   CorvaneObject** errorDescription);
    /* The text for a value as a new string; null when the formatter has none for it. */
    CorvaneObject* (*stringForObjectValue)(CorvaneObject* formatter, const CorvaneObject* value);
    /* Bounds of a number formatter, both included, as decimal digits; null takes the bound away. False when
     * `formatter` is no number formatter or the text no number. */
    int8_t (*setMinimum)(CorvaneObject* formatter, const char* decimal);
    int8_t (*setMaximum)(CorvaneObject* formatter, const char* decimal);
} CorvaneFormatters;

#ifdef __cplusplus
}
#endif
