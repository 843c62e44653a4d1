#pragma once

/* Objects of the host that a plug-in holds by reference: property-list values, which it can make, read and
 * take apart, and the host's own sessions, nodes, authorizations and formatters, which it passes back.
 *
 * Ownership: every CorvaneObject* that an entry answers is a reference of the caller's own, and so is what an
 * entry leaves in an out-value; `release` each exactly once, on any path. What is passed in stays the
 * caller's. Nothing is freed while somebody holds a reference, so objects may outlive the plug-in object that
 * got them, but not the module.
 *
 * Values are shared, not copied: a change of an array or dictionary is seen through all its references, those
 * of the host included. Where an object is of another kind than an entry wants, or null, the entry answers
 * what is said under "otherwise" and does nothing else. Main thread.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Does a table have this entry? Tables grow at their ends, so whoever made this one may not know it:
 * CORVANE_OFFERS(CorvaneHost, host, isRemote). */
#define CORVANE_OFFERS(type, table, entry)                                                                   \
    ((table)->size >= offsetof(type, entry) + sizeof((table)->entry) && (table)->entry != 0)

typedef struct CorvaneObject CorvaneObject;

/* What an object is. Later versions may add kinds; treat an unknown one like CORVANE_OTHER. */
enum CorvaneKind {
    CORVANE_NULL = 0, /* no object at all */
    CORVANE_STRING = 1,
    CORVANE_INTEGER = 2, /* a whole number, signed or not, 64 bits */
    CORVANE_REAL = 3,
    CORVANE_BOOLEAN = 4,
    CORVANE_DATE = 5,
    CORVANE_DATA = 6,
    CORVANE_ARRAY = 7,
    CORVANE_DICTIONARY = 8,
    CORVANE_SESSION = 16,
    CORVANE_NODE = 17,
    CORVANE_AUTHORIZATION = 18,
    CORVANE_FORMATTER = 19,
    CORVANE_FORM = 20,
    CORVANE_OTHER = 255
};

typedef struct CorvaneObjects {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* Counts one more reference and answers the same object; null for null. */
    CorvaneObject* (*retain)(CorvaneObject* object);
    /* Counts one reference less; the last one frees the object. Null is harmless. */
    void (*release)(CorvaneObject* object);
    /* One of CorvaneKind. */
    int32_t (*kind)(const CorvaneObject* object);
    /* A new string that describes the object to people who read logs; "(null)" for null. Data is written out:
     * never describe a secret. */
    CorvaneObject* (*description)(const CorvaneObject* object);

    /* Makers. Each answers a new immutable value; arrays and dictionaries come empty and can be changed.
     * `length` counts bytes; texts are UTF-8 and may hold a NUL. Bytes are overwritten when the last
     * reference is released, so that data can carry a secret. */
    CorvaneObject* (*makeString)(const char* text, uint64_t length);
    CorvaneObject* (*makeInteger)(int64_t number);
    CorvaneObject* (*makeUnsigned)(uint64_t number);
    CorvaneObject* (*makeReal)(double number);
    CorvaneObject* (*makeBoolean)(int8_t truth);
    CorvaneObject* (*makeDate)(double secondsSince1970);
    CorvaneObject* (*makeData)(const void* bytes, uint64_t length);
    CorvaneObject* (*makeArray)(void);
    CorvaneObject* (*makeDictionary)(void);

    /* Both refuse a value that holds the container itself. */
    /* Adds a value at the end; false for no array, an array that can't be changed, or no value. */
    int8_t (*append)(CorvaneObject* array, const CorvaneObject* value);
    /* Stores a value under a key; a null value removes the key. False for no dictionary, or one that can't be
     * changed. */
    int8_t (*setValueForKey)(CorvaneObject* dictionary, const char* key, const CorvaneObject* value);

    /* The text of a string with a NUL behind it, `length` bytes without that (`length` may be null).
     * Borrowed: valid while the reference is held and nobody changes the string. Otherwise: "" and 0. */
    const char* (*text)(const CorvaneObject* string, uint64_t* length);
    /* The bytes of data, borrowed in the same way. Otherwise: null and 0. */
    const uint8_t* (*bytes)(const CorvaneObject* data, uint64_t* length);
    /* A number cut to a whole one and to the ends of the range; a boolean is 0 or 1. Otherwise: 0. */
    int64_t (*integer)(const CorvaneObject* number);
    /* Otherwise: 0. */
    double (*real)(const CorvaneObject* number);
    /* True for a true boolean and for a number that isn't 0. Otherwise: false. */
    int8_t (*boolean)(const CorvaneObject* number);
    /* Seconds since 1970-01-01T00:00:00Z. Otherwise: 0. */
    double (*date)(const CorvaneObject* date);

    /* Elements of an array or entries of a dictionary. Otherwise: 0. */
    uint64_t (*count)(const CorvaneObject* container);
    /* An element of an array. Otherwise, and past the end: null. */
    CorvaneObject* (*at)(const CorvaneObject* array, uint64_t index);
    /* The keys of a dictionary as a new array of strings in the order of their bytes. Otherwise: null. */
    CorvaneObject* (*keys)(const CorvaneObject* dictionary);
    /* The value under a key. Otherwise, and where the key is absent: null. */
    CorvaneObject* (*valueForKey)(const CorvaneObject* dictionary, const char* key);
} CorvaneObjects;

#ifdef __cplusplus
}
#endif
