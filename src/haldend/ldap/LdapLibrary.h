#pragma once

namespace corvane::haldend {

/// Has the LDAP library set itself up, before its first use. It looks the machine's own name up then, which
/// takes ten seconds where that name is in no file and no name server answers; here it takes one for each
/// name server. Any thread; later calls return at once.
void prepareLdapLibrary();

} // namespace corvane::haldend
