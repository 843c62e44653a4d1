#pragma once

#include <gnutls/gnutls.h>

#include <optional>
#include <string>

#include "haldend/ldap/LdapFailure.h"

namespace corvane::haldend {

/// What is wrong with the certificates that the other side has shown, none when they will do: signed by an
/// authority that is trusted, valid today, and made out for `host`, which is a name or an address. Asked of
/// the encryption library itself rather than of the LDAP library's error texts, so that the three can be told
/// apart for certain. `authorities` says in words whose signature counts.
[[nodiscard]] std::optional<LdapFailure> objectionToPeer(gnutls_session_t session, const std::string& host,
                                                         const std::string& authorities);
/// Subject, issuer and end of the certificate for people; "" when none was shown.
[[nodiscard]] std::string describedPeer(gnutls_session_t session);

} // namespace corvane::haldend
