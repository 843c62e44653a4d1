#pragma once

/* The numbered requests about LDAP servers that a directory service's configuration node answers, and the
 * keys of the property lists that go to and fro. Published, so that plug-ins other than Corvane's own may use
 * them. C has macros; in C++ each has a shorter name below, in corvane::sdk::ldap.
 *
 * Each request but CORVANE_LDAP_CALL_LIST_SERVERS is the 32-byte authorization external form directly
 * followed by an XML property list, a dictionary; each reply is an XML property list. What a request says
 * wrongly, and what a right is missing for, is the call's error, see Errors.h; a dictionary may hold keys
 * that its reader doesn't know.
 *
 * A server is a dictionary of the keys CORVANE_LDAP_KEY_. In a request a key that is absent means its default
 * in a new server, and "as it is" in one that exists. Options of the machine's own configuration that have no
 * key here are kept as they are. */

/* Requests */
/* No authorization, no payload. Reply: {"revision": string, "servers": array of servers}. */
#define CORVANE_LDAP_CALL_LIST_SERVERS 1201
/* {"revision": string, "put": array of servers, "remove": array of names}: all of it or nothing. A server
 * in "put" may name the one that it takes the place of ("replaces"): its policies then follow the new name.
 * A removed server leaves both policies. The call fails with CORVANE_ERROR_CHANGED_ELSEWHERE when
 * `revision` isn't the present one. It stands for the servers with all their options, and tells nothing of
 * them; a changed search policy doesn't change it. Reply: as for CORVANE_LDAP_CALL_LIST_SERVERS, as it is
 * afterwards. */
#define CORVANE_LDAP_CALL_WRITE_SERVERS 1202
/* {"kind": "test" or "bases", "server": a server, "user": string, "group": string, "clearPassword":
 * boolean}: begins to try a server in the background. Without a true "clearPassword" no password is sent
 * over a connection that isn't encrypted: ask the user first. `server` need not be saved; without a password
 * it uses the saved one of the server of that name (or of the one that it "replaces"), and needs no name. At
 * most four are under way together; another one fails with CORVANE_ERROR_PARAMETER. Reply: {"job": integer}.
 */
#define CORVANE_LDAP_CALL_START_TEST 1210
/* {"job": integer}. Reply: a report, see CORVANE_LDAP_REPORT_FINISHED and those after it. A job that was
 * reported as finished is forgotten. */
#define CORVANE_LDAP_CALL_TEST_REPORT 1211
/* {"job": integer}: gives up and forgets the job at once. Reply: an empty dictionary. */
#define CORVANE_LDAP_CALL_CANCEL_TEST 1212

/* Keys of a server */
/* String: how the machine calls the server. Letters A to Z, digits, ".", "_" and "-" behind the first; SSSD
 * tells no capitals from small letters. People never need it to find the server's node, see
 * CORVANE_LDAP_KEY_NODE. */
#define CORVANE_LDAP_KEY_NAME "name"
/* String, only in replies: the directory node of the server, as search policies name it. It comes of the
 * first address ("/LDAP/ldap.example.com") and changes with it; the policies follow such a change. */
#define CORVANE_LDAP_KEY_NODE "node"
/* Boolean, only in replies: one of the search policies asks the server now, in whichever mode it is. */
#define CORVANE_LDAP_KEY_ON_POLICY "onPolicy"
/* String; only in requests. */
#define CORVANE_LDAP_KEY_REPLACES "replaces"
/* Array of host names or addresses, tried in this order; IPv6 with or without brackets, in replies without.
 * A reply may hold what a person has written otherwise, as in "ldap://b.example.com:1389": that may go back
 * as it is as long as addresses, port and security are sent back unchanged. */
#define CORVANE_LDAP_KEY_ADDRESSES "addresses"
/* Integer; 0 for the standard port of the security mode. */
#define CORVANE_LDAP_KEY_PORT "port"
/* One of CORVANE_LDAP_SECURITY_; default "startTLS". */
#define CORVANE_LDAP_KEY_SECURITY "security"
/* Path on the machine, "" for the system's own authorities. */
#define CORVANE_LDAP_KEY_CA_FILE "caFile"
/* String. */
#define CORVANE_LDAP_KEY_BASE_DN "baseDN"
/* String, "" for an anonymous bind. */
#define CORVANE_LDAP_KEY_BIND_DN "bindDN"
/* Data, UTF-8 bytes; only in requests, never in replies. Empty takes a stored password away. */
#define CORVANE_LDAP_KEY_PASSWORD "password"
/* Boolean; only in replies. */
#define CORVANE_LDAP_KEY_HAS_PASSWORD "hasPassword"
/* One of CORVANE_LDAP_SCHEMA_; default "rfc2307". */
#define CORVANE_LDAP_KEY_SCHEMA "schema"
/* Boolean; default false: users and groups have the numbers that the directory stores (uidNumber,
 * gidNumber). True, with the schema "ad" only: SSSD computes them from the security identifiers
 * (`ldap_id_mapping`). */
#define CORVANE_LDAP_KEY_COMPUTED_NUMBERS "computedNumbers"
/* Integer, seconds, 1 to 120; default 6. */
#define CORVANE_LDAP_KEY_CONNECT_TIMEOUT "connectTimeout"
/* Integer, seconds, 1 to 120; default 8. */
#define CORVANE_LDAP_KEY_SEARCH_TIMEOUT "searchTimeout"

/* Security modes */
#define CORVANE_LDAP_SECURITY_START_TLS "startTLS"
#define CORVANE_LDAP_SECURITY_LDAPS "ldaps"
/* SSSD then looks accounts up, but refuses to log anybody in. */
#define CORVANE_LDAP_SECURITY_NONE "none"

/* Schemas */
#define CORVANE_LDAP_SCHEMA_RFC2307 "rfc2307"
#define CORVANE_LDAP_SCHEMA_RFC2307BIS "rfc2307bis"
#define CORVANE_LDAP_SCHEMA_ACTIVE_DIRECTORY "ad"

/* Keys of the report about a test */
/* Boolean. */
#define CORVANE_LDAP_REPORT_FINISHED "finished"
/* Array of dictionaries in the order in which they are taken: "step" (one of CORVANE_LDAP_STEP_), "state"
 * ("waiting", "running", "done", "failed" or "skipped"), "detail" (string: what was seen, for people; may be
 * empty). All six steps for "test", the first four for "bases". What follows a failed step is skipped. */
#define CORVANE_LDAP_REPORT_STEPS "steps"
/* Absent while nothing has failed: a dictionary of the strings "kind" (one of CORVANE_LDAP_FAILURE_),
 * "cause", "evidence" and "nextStep", the last three for people. */
#define CORVANE_LDAP_REPORT_FAILURE "failure"
/* Array of strings: the naming contexts that the server lists. */
#define CORVANE_LDAP_REPORT_BASES "bases"
/* String: the one the server prefers, else the first. */
#define CORVANE_LDAP_REPORT_DEFAULT_BASE "defaultBase"

/* Steps of a test */
#define CORVANE_LDAP_STEP_CONNECT "connect"
/* "skipped" where the security mode is none. */
#define CORVANE_LDAP_STEP_ENCRYPT "encrypt"
/* For "bases" only where the server doesn't say them to anybody. */
#define CORVANE_LDAP_STEP_BIND "bind"
/* That the base is there. */
#define CORVANE_LDAP_STEP_BASE "base"
/* The user that was named, or any one. */
#define CORVANE_LDAP_STEP_USER "user"
#define CORVANE_LDAP_STEP_GROUP "group"

/* Kinds of failure */
#define CORVANE_LDAP_FAILURE_UNKNOWN_HOST "unknownHost"
#define CORVANE_LDAP_FAILURE_REFUSED "refused"
/* Nothing is heard: before or after the connection is made. */
#define CORVANE_LDAP_FAILURE_TIMEOUT "timeout"
/* The certificate isn't signed by an authority that is trusted. */
#define CORVANE_LDAP_FAILURE_UNTRUSTED "untrusted"
/* The certificate is too old, or not valid yet. */
#define CORVANE_LDAP_FAILURE_EXPIRED "expired"
/* The certificate is another host's. */
#define CORVANE_LDAP_FAILURE_WRONG_NAME "wrongName"
/* The server can't encrypt, or not in this way. */
#define CORVANE_LDAP_FAILURE_TLS_UNSUPPORTED "tlsUnsupported"
#define CORVANE_LDAP_FAILURE_CA_FILE_UNREADABLE "caFileUnreadable"
/* Bind DN or password are wrong. */
#define CORVANE_LDAP_FAILURE_CREDENTIALS "credentials"
/* This way to bind isn't allowed (anonymous). */
#define CORVANE_LDAP_FAILURE_BIND_REFUSED "bindRefused"
/* Signing in is allowed over an encrypted connection only. */
#define CORVANE_LDAP_FAILURE_ENCRYPTION_REQUIRED "encryptionRequired"
/* The connection isn't encrypted, and the request doesn't say that the password may be sent all the same. */
#define CORVANE_LDAP_FAILURE_CLEAR_PASSWORD "clearPassword"
#define CORVANE_LDAP_FAILURE_NO_SUCH_BASE "noSuchBase"
/* No user or group: rights or schema are wrong. */
#define CORVANE_LDAP_FAILURE_NOTHING_FOUND "nothingFound"
/* There are users or groups, but without the numbers that a machine needs: it wouldn't find them. */
#define CORVANE_LDAP_FAILURE_NO_NUMBERS "noNumbers"
#define CORVANE_LDAP_FAILURE_OTHER "other"

#ifdef __cplusplus
#include <cstdint>

namespace corvane::sdk::ldap {

namespace call {
inline constexpr std::int32_t listServers = CORVANE_LDAP_CALL_LIST_SERVERS;
inline constexpr std::int32_t writeServers = CORVANE_LDAP_CALL_WRITE_SERVERS;
inline constexpr std::int32_t startTest = CORVANE_LDAP_CALL_START_TEST;
inline constexpr std::int32_t testReport = CORVANE_LDAP_CALL_TEST_REPORT;
inline constexpr std::int32_t cancelTest = CORVANE_LDAP_CALL_CANCEL_TEST;
} // namespace call

namespace serverKey {
inline constexpr auto name = CORVANE_LDAP_KEY_NAME;
inline constexpr auto node = CORVANE_LDAP_KEY_NODE;
inline constexpr auto onPolicy = CORVANE_LDAP_KEY_ON_POLICY;
inline constexpr auto replaces = CORVANE_LDAP_KEY_REPLACES;
inline constexpr auto addresses = CORVANE_LDAP_KEY_ADDRESSES;
inline constexpr auto port = CORVANE_LDAP_KEY_PORT;
inline constexpr auto security = CORVANE_LDAP_KEY_SECURITY;
inline constexpr auto caFile = CORVANE_LDAP_KEY_CA_FILE;
inline constexpr auto baseDN = CORVANE_LDAP_KEY_BASE_DN;
inline constexpr auto bindDN = CORVANE_LDAP_KEY_BIND_DN;
inline constexpr auto password = CORVANE_LDAP_KEY_PASSWORD;
inline constexpr auto hasPassword = CORVANE_LDAP_KEY_HAS_PASSWORD;
inline constexpr auto schema = CORVANE_LDAP_KEY_SCHEMA;
inline constexpr auto computedNumbers = CORVANE_LDAP_KEY_COMPUTED_NUMBERS;
inline constexpr auto connectTimeout = CORVANE_LDAP_KEY_CONNECT_TIMEOUT;
inline constexpr auto searchTimeout = CORVANE_LDAP_KEY_SEARCH_TIMEOUT;
} // namespace serverKey

namespace security {
inline constexpr auto startTLS = CORVANE_LDAP_SECURITY_START_TLS;
inline constexpr auto ldaps = CORVANE_LDAP_SECURITY_LDAPS;
inline constexpr auto none = CORVANE_LDAP_SECURITY_NONE;
} // namespace security

namespace schema {
inline constexpr auto rfc2307 = CORVANE_LDAP_SCHEMA_RFC2307;
inline constexpr auto rfc2307bis = CORVANE_LDAP_SCHEMA_RFC2307BIS;
inline constexpr auto activeDirectory = CORVANE_LDAP_SCHEMA_ACTIVE_DIRECTORY;
} // namespace schema

namespace reportKey {
inline constexpr auto finished = CORVANE_LDAP_REPORT_FINISHED;
inline constexpr auto steps = CORVANE_LDAP_REPORT_STEPS;
inline constexpr auto failure = CORVANE_LDAP_REPORT_FAILURE;
inline constexpr auto bases = CORVANE_LDAP_REPORT_BASES;
inline constexpr auto defaultBase = CORVANE_LDAP_REPORT_DEFAULT_BASE;
} // namespace reportKey

namespace step {
inline constexpr auto connect = CORVANE_LDAP_STEP_CONNECT;
inline constexpr auto encrypt = CORVANE_LDAP_STEP_ENCRYPT;
inline constexpr auto bind = CORVANE_LDAP_STEP_BIND;
inline constexpr auto base = CORVANE_LDAP_STEP_BASE;
inline constexpr auto user = CORVANE_LDAP_STEP_USER;
inline constexpr auto group = CORVANE_LDAP_STEP_GROUP;
} // namespace step

namespace failure {
inline constexpr auto unknownHost = CORVANE_LDAP_FAILURE_UNKNOWN_HOST;
inline constexpr auto refused = CORVANE_LDAP_FAILURE_REFUSED;
inline constexpr auto timeout = CORVANE_LDAP_FAILURE_TIMEOUT;
inline constexpr auto untrusted = CORVANE_LDAP_FAILURE_UNTRUSTED;
inline constexpr auto expired = CORVANE_LDAP_FAILURE_EXPIRED;
inline constexpr auto wrongName = CORVANE_LDAP_FAILURE_WRONG_NAME;
inline constexpr auto tlsUnsupported = CORVANE_LDAP_FAILURE_TLS_UNSUPPORTED;
inline constexpr auto caFileUnreadable = CORVANE_LDAP_FAILURE_CA_FILE_UNREADABLE;
inline constexpr auto credentials = CORVANE_LDAP_FAILURE_CREDENTIALS;
inline constexpr auto bindRefused = CORVANE_LDAP_FAILURE_BIND_REFUSED;
inline constexpr auto encryptionRequired = CORVANE_LDAP_FAILURE_ENCRYPTION_REQUIRED;
inline constexpr auto clearPassword = CORVANE_LDAP_FAILURE_CLEAR_PASSWORD;
inline constexpr auto noSuchBase = CORVANE_LDAP_FAILURE_NO_SUCH_BASE;
inline constexpr auto nothingFound = CORVANE_LDAP_FAILURE_NOTHING_FOUND;
inline constexpr auto noNumbers = CORVANE_LDAP_FAILURE_NO_NUMBERS;
inline constexpr auto other = CORVANE_LDAP_FAILURE_OTHER;
} // namespace failure

} // namespace corvane::sdk::ldap
#endif
