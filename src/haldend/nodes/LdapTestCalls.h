#pragma once

#include "haldend/engine/Engine.h"

namespace corvane::haldend {

// The configuration node's calls about trying LDAP servers, as sdk/LdapServerCalls.h describes them. Requests
// come without the authorization, which the node has looked at. Main thread; none of them waits for a server.
// Each throws `Failure`.

util::Bytes startLdapTest(Engine& engine, util::BytesView request);
util::Bytes ldapTestReport(Engine& engine, util::BytesView request);
util::Bytes cancelLdapTest(Engine& engine, util::BytesView request);

} // namespace corvane::haldend
