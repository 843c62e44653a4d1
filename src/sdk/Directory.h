#pragma once

/* What a plug-in can ask of the directory service through the sessions and nodes that the host hands out.
 *
 * Every entry blocks until the service has answered. `error` may be null; it is written on failure alone, and
 * then with a new dictionary (release it): "code" (integer, see Errors.h), and the strings "description"
 * (what failed), "reason" (cause and evidence, may be empty) and "recovery" (what to try next, may be empty).
 * References as described in Objects.h. Main thread.
 */

#include "Errors.h"
#include "Objects.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct CorvaneDirectory {
    uint32_t size; /* of this table in bytes, as the host knows it; entries beyond it aren't there */

    /* The names of all nodes of a session, an array of strings in the service's order. Null on failure. */
    CorvaneObject* (*nodeNames)(CorvaneObject* session, CorvaneObject** error);
    /* Opens a node: "/LDAP/ldap.example.com". Null on failure. */
    CorvaneObject* (*nodeWithName)(CorvaneObject* session, const char* name, CorvaneObject** error);
    /* The node's name, a string; null when `node` is none. */
    CorvaneObject* (*nodeName)(CorvaneObject* node);
    /* What the node says of itself: a dictionary from attribute names to arrays, for one key or, with a null
     * key, for all. Null on failure. */
    CorvaneObject* (*nodeDetails)(CorvaneObject* node, const char* key, CorvaneObject** error);
    /* The names of the nodes below a node, an array of strings. Null on failure. */
    CorvaneObject* (*subnodeNames)(CorvaneObject* node, CorvaneObject** error);
    /* The records of a type ("dsRecTypeStandard:Users"), an array of dictionaries from attribute names to
     * arrays. `name`: the record's name, null for all records. `attributes`: an array of attribute names,
     * null for all. `maximum`: how many records at most, 0 for any number. Null on failure. */
    CorvaneObject* (*records)(CorvaneObject* node, const char* recordType, const char* name,
                              CorvaneObject* attributes, uint32_t maximum, CorvaneObject** error);

    /* Sends a numbered request. The reply is data, or null when the service gave none; whether the call
     * worked is said by `error` alone. `request` may be null when `length` is 0. */
    CorvaneObject* (*customCall)(CorvaneObject* node, int32_t code, const void* request, uint64_t length,
                                 CorvaneObject** error);
    /* The same with the 32-byte authorization external form in front of the request. */
    CorvaneObject* (*customCallWithAuthorization)(CorvaneObject* node, int32_t code, const void* request,
                                                  uint64_t length, const uint8_t authorization[32],
                                                  CorvaneObject** error);
    /* Sends the authorization's form and a value as an XML property list. A value that has no such form is an
     * error, and nothing is sent then. The document is overwritten after use. */
    CorvaneObject* (*customCallSendPropertyList)(CorvaneObject* node, int32_t code,
                                                 const CorvaneObject* propertyList,
                                                 const uint8_t authorization[32], CorvaneObject** error);
    /* Sends strings and data one after the other, each behind its length (32 bits, the host's byte order).
     * No authorization is added; other kinds are passed over. */
    CorvaneObject* (*customCallSendItems)(CorvaneObject* node, int32_t code, CorvaneObject* items,
                                          CorvaneObject** error);

    /* What the service knows: the names of the record types, and of the attribute types, as a new array of
     * strings in the service's order. `node` is the configuration node. A service that fails gives a short or
     * empty list; null only when `node` is none. */
    CorvaneObject* (*standardRecordTypes)(CorvaneObject* node);
    CorvaneObject* (*standardAttributeTypes)(CorvaneObject* node);
} CorvaneDirectory;

#ifdef __cplusplus
}
#endif
