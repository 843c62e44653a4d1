#include "haldend/ldap/LdapLibrary.h"

#include <ldap.h>
#include <netinet/in.h>
#include <resolv.h>

#include <mutex>

namespace corvane::haldend {

void prepareLdapLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        ::res_init();
        const auto seconds = _res.retrans; // of this thread alone
        const auto attempts = _res.retry;
        _res.retrans = _res.retry = 1;
        LDAP* ldap = nullptr;
        if (ldap_create(&ldap) == LDAP_SUCCESS) ldap_unbind_ext_s(ldap, nullptr, nullptr);
        _res.retrans = seconds;
        _res.retry = attempts;
    });
}

} // namespace corvane::haldend
