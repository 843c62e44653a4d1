#pragma once

#include <cstdint>

/// The numbered requests about LDAP servers that a directory service's configuration node answers, and the
/// keys of the property lists that go to and fro. Published, so that plug-ins other than Corvane's own may
/// use them.
///
/// Each request but `listServers` is the 32-byte authorization external form directly followed by an XML
/// property list, a dictionary; each reply is an XML property list. What a request says wrongly, and what a
/// right is missing for, is the call's error; a dictionary may hold keys that its reader doesn't know.
///
/// A server is a dictionary of the keys in `serverKey`. In a request a key that is absent stands for its
/// default in a new server, and for "as it is" in one that exists. Options of the machine's own configuration
/// that have no key here are kept as they are.
namespace corvane::sdk::ldap {

namespace call {
/// No authorization, no payload. Reply: {"revision": string, "servers": array of servers}.
inline constexpr std::int32_t listServers = 1201;
/// {"revision": string, "put": array of servers, "remove": array of names}: all of it or nothing. A server
/// in "put" may name the one that it takes the place of ("replaces"): its policies then follow the new name.
/// A removed server leaves both policies. The call fails with error 4300 (changed elsewhere) when
/// `revision` isn't the present one. It stands for the servers with all their options, and tells nothing of
/// them; a changed search policy doesn't change it. Reply: as for `listServers`, as it is afterwards.
inline constexpr std::int32_t writeServers = 1202;
/// {"kind": "test" or "bases", "server": a server, "user": string, "group": string, "clearPassword":
/// boolean}: begins to try a server in the background. Without a true "clearPassword" no password is sent
/// over a connection that isn't encrypted: ask the user first. `server` need not be saved; without a password
/// it uses the saved one of the server of that name (or of the one that it "replaces"), and needs no name. At
/// most four are under way together; another one fails with error 4200. Reply: {"job": integer}.
inline constexpr std::int32_t startCheck = 1210;
/// {"job": integer}. Reply: a report, see `reportKey`. A job that was reported as finished is forgotten.
inline constexpr std::int32_t checkReport = 1211;
/// {"job": integer}: gives up and forgets the job at once. Reply: an empty dictionary.
inline constexpr std::int32_t cancelCheck = 1212;
} // namespace call

namespace serverKey {
/// String: how the machine calls the server. Letters A to Z, digits, ".", "_" and "-" behind the first; SSSD
/// tells no capitals from small letters. People never need it to find the server's node, see `node`.
inline constexpr auto name = "name";
/// String, only in replies: the directory node of the server, as search policies name it. It comes of the
/// first address ("/LDAP/ldap.example.com") and changes with it; the policies follow such a change.
inline constexpr auto node = "node";
/// Boolean, only in replies: one of the search policies asks the server now, in whichever mode it is.
inline constexpr auto onPolicy = "onPolicy";
inline constexpr auto replaces = "replaces"; ///< string; only in requests
/// Array of host names or addresses, tried in this order; IPv6 with or without brackets, in replies without.
/// A reply may hold what a person has written otherwise, as in "ldap://b.example.com:1389": that may go back
/// as it is as long as addresses, port and security are sent back unchanged.
inline constexpr auto addresses = "addresses";
inline constexpr auto port = "port";         ///< integer; 0 for the standard port of the security mode
inline constexpr auto security = "security"; ///< one of `security`; default "startTLS"
inline constexpr auto caFile = "caFile";     ///< path on the machine, "" for the system's own authorities
inline constexpr auto baseDN = "baseDN";     ///< string
inline constexpr auto bindDN = "bindDN";     ///< string, "" for an anonymous bind
/// Data, UTF-8 bytes; only in requests, never in replies. Empty takes a stored password away.
inline constexpr auto password = "password";
inline constexpr auto hasPassword = "hasPassword"; ///< boolean; only in replies
inline constexpr auto schema = "schema";           ///< one of `schema`; default "rfc2307"
/// Boolean; default false: users and groups have the numbers that the directory stores (uidNumber,
/// gidNumber). True, with the schema "ad" only: SSSD computes them from the security identifiers
/// (`ldap_id_mapping`).
inline constexpr auto computedNumbers = "computedNumbers";
inline constexpr auto connectTimeout = "connectTimeout"; ///< integer, seconds, 1 to 120; default 6
inline constexpr auto searchTimeout = "searchTimeout";   ///< integer, seconds, 1 to 120; default 8
} // namespace serverKey

namespace security {
inline constexpr auto startTLS = "startTLS";
inline constexpr auto ldaps = "ldaps";
inline constexpr auto none = "none"; ///< SSSD then looks accounts up, but refuses to log anybody in
} // namespace security

namespace schema {
inline constexpr auto rfc2307 = "rfc2307";
inline constexpr auto rfc2307bis = "rfc2307bis";
inline constexpr auto activeDirectory = "ad";
} // namespace schema

/// The report about a job.
namespace reportKey {
inline constexpr auto finished = "finished"; ///< boolean
/// Array of dictionaries in the order in which they are taken: "step" (one of `step`), "state" ("waiting",
/// "running", "done", "failed" or "skipped"), "detail" (string: what was seen, for people; may be empty). All
/// six of `step` for "test", the first four for "bases". What follows a failed step is skipped.
inline constexpr auto steps = "steps";
/// Absent while nothing has failed: a dictionary of the strings "kind" (one of `failure`), "cause",
/// "evidence" and "nextStep", the last three for people.
inline constexpr auto failure = "failure";
inline constexpr auto bases = "bases"; ///< array of strings: the naming contexts that the server tells
inline constexpr auto defaultBase = "defaultBase"; ///< string: the one the server prefers, else the first
} // namespace reportKey

namespace step {
inline constexpr auto connect = "connect";
inline constexpr auto encrypt = "encrypt"; ///< "skipped" where the security mode is none
inline constexpr auto bind = "bind";       ///< for "bases" only where the server doesn't say them to anybody
inline constexpr auto base = "base";       ///< that the base is there
inline constexpr auto user = "user";       ///< the user that was named, or any one
inline constexpr auto group = "group";
} // namespace step

namespace failure {
inline constexpr auto unknownHost = "unknownHost";
inline constexpr auto refused = "refused";
inline constexpr auto timeout = "timeout"; ///< nothing is heard: before or after the connection stands
inline constexpr auto untrusted =
    "untrusted";                           ///< the certificate isn't signed by an authority that is trusted
inline constexpr auto expired = "expired"; ///< the certificate is too old, or not valid yet
inline constexpr auto wrongName = "wrongName";           ///< the certificate is another host's
inline constexpr auto tlsUnsupported = "tlsUnsupported"; ///< the server can't encrypt, or not in this way
inline constexpr auto caFileUnreadable = "caFileUnreadable";
inline constexpr auto credentials = "credentials"; ///< bind DN or password are wrong
inline constexpr auto bindRefused = "bindRefused"; ///< this way to bind isn't allowed (anonymous)
/// Signing in is allowed over an encrypted connection only.
inline constexpr auto encryptionRequired = "encryptionRequired";
/// The connection isn't encrypted, and the request doesn't say that the password may be sent all the same.
inline constexpr auto clearPassword = "clearPassword";
inline constexpr auto noSuchBase = "noSuchBase";
inline constexpr auto nothingFound = "nothingFound"; ///< no user or group: rights or schema are wrong
/// There are users or groups, but without the numbers that a machine needs: it wouldn't find them.
inline constexpr auto noNumbers = "noNumbers";
inline constexpr auto other = "other";
} // namespace failure

} // namespace corvane::sdk::ldap
