#include "haldend/ldap/LdapTrust.h"

#include <ldap.h>
#include <unistd.h>

#include "haldend/ldap/LdapLibrary.h"

namespace corvane::haldend {
namespace {

std::string certificatePath(const MachineFolder& folder, const std::string& path) {
    if (path.empty()) return path;
    const auto inside = folder.resolved(path);
    return ::access(inside.c_str(), R_OK) == 0 ? inside : path;
}

std::string readablePath(int option) {
    char* text = nullptr;
    if (ldap_get_option(nullptr, option, &text) != LDAP_OPT_SUCCESS || !text) return {};
    std::string path = text;
    ldap_memfree(text);
    return ::access(path.c_str(), R_OK) == 0 ? path : std::string();
}

} // namespace

LdapTrust LdapTrust::from(const SssdDomain& section, const MachineFolder& folder) {
    const auto demand = section.option("ldap_tls_reqcert");
    return {certificatePath(folder, section.option("ldap_tls_cacert")),
            certificatePath(folder, section.option("ldap_tls_cacertdir")),
            demand != "never" && demand != "allow"};
}

std::string LdapTrust::authorities() const {
    if (!caFile.empty()) return "the authorities in " + caFile;
    if (!caFolder.empty()) return "the authorities in " + caFolder;
    return "this machine's own list of authorities";
}

LdapTrust usualLdapTrust() {
    prepareLdapLibrary();
    return {readablePath(LDAP_OPT_X_TLS_CACERTFILE), readablePath(LDAP_OPT_X_TLS_CACERTDIR)};
}

} // namespace corvane::haldend
