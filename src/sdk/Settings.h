#pragma once

/* Typed reads and writes of dictionaries with settings, with one policy: what is missing gives the caller's
 * default or an empty value, what is of the wrong kind is logged, once per call, and treated as missing.
 * Reads never change anything. References as described in Objects.h. Main thread.
 *
 * Numbers (booleans included) convert to each scalar; outside the 32-bit range they are clamped, fractions
 * are cut off. Strings convert to an integer (the decimal number they begin with, else 0) and to a boolean
 * (true for a first letter Y or T in either case, or a digit 1-9, after blanks, a sign and leading zeros),
 * but not to an unsigned number. */

#include "Objects.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct CorvaneSettings {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* Any value counts. False when `settings` is no dictionary. */
    int8_t (*containsKey)(const CorvaneObject* settings, const char* key);
    int32_t (*integerForKey)(const CorvaneObject* settings, const char* key, int32_t withDefault);
    uint32_t (*unsignedForKey)(const CorvaneObject* settings, const char* key, uint32_t withDefault);
    int8_t (*booleanForKey)(const CorvaneObject* settings, const char* key, int8_t withDefault);
    /* The stored object itself, or an empty one; null only when `settings` is no dictionary. */
    CorvaneObject* (*stringForKey)(const CorvaneObject* settings, const char* key);
    CorvaneObject* (*arrayForKey)(const CorvaneObject* settings, const char* key);
    CorvaneObject* (*dictionaryForKey)(const CorvaneObject* settings, const char* key);
    CorvaneObject* (*dataForKey)(const CorvaneObject* settings, const char* key);
    /* A copy in which everything, at every depth, can be changed. Null for what is no dictionary, or holds
     * what is no property-list value. */
    CorvaneObject* (*mutableDeepCopy)(const CorvaneObject* settings);

    /* Writes. False, and nothing is changed, for what is no dictionary or can't be changed. What is empty or
     * null isn't stored: its key is removed. The object that is passed is the one that is stored. */
    int8_t (*setInteger)(CorvaneObject* settings, int32_t value, const char* key);
    int8_t (*setUnsigned)(CorvaneObject* settings, uint32_t value, const char* key);
    /* False is stored. */
    int8_t (*setBoolean)(CorvaneObject* settings, int8_t value, const char* key);
    /* True is stored, false removes the key. */
    int8_t (*setExists)(CorvaneObject* settings, int8_t exists, const char* key);
    /* Without `removeIfNull` a null string is stored as "", and an empty one as it is. */
    int8_t (*setString)(CorvaneObject* settings, const CorvaneObject* string, const char* key,
                        int8_t removeIfNull);
    /* Zero is stored. */
    int8_t (*setNumber)(CorvaneObject* settings, const CorvaneObject* number, const char* key);
    int8_t (*setArray)(CorvaneObject* settings, const CorvaneObject* array, const char* key);
    int8_t (*setDictionary)(CorvaneObject* settings, const CorvaneObject* dictionary, const char* key);
    int8_t (*setData)(CorvaneObject* settings, const CorvaneObject* data, const char* key);
} CorvaneSettings;

#ifdef __cplusplus
}
#endif
