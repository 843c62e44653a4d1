#pragma once

#include <string>
#include <vector>

#include "haldend/files/SssdFile.h"
#include "haldend/storage/MachineFolder.h"
#include "util/Bytes.h"

namespace corvane::haldend {

/// Where to search and with what extra filter; "" for none.
struct LdapSearchBase {
    std::string base;
    int scope; ///< as LDAP numbers them: 0 base, 1 one level, 2 subtree
    std::string filter;
};

/// How to reach one LDAP directory, as SSSD's options for it say. Times in seconds.
struct LdapSettings {
    LdapSettings() = default;
    LdapSettings(const LdapSettings&) = default;
    LdapSettings& operator=(const LdapSettings&) = default;
    ~LdapSettings() { util::wipe(password); }

    std::vector<std::string> uris;  ///< tried in this order
    std::string bindName, password; ///< "" for an anonymous bind
    bool startTls = false;
    std::string caFile, caFolder, requireCertificate; ///< "" for the library's own settings
    int networkTimeout = 6;
    int operationTimeout = 8;
    int pageSize = 1000;
    std::vector<LdapSearchBase> userBases, groupBases; ///< none: the server's default
    std::string userClass, groupClass;
    SssdDomain domain; ///< for the attribute names

    /// `folder`: the machine that the options belong to; certificates are looked for in it first. Throws
    /// `Failure` when there is no server or the password is stored in a form that only SSSD can read.
    [[nodiscard]] static LdapSettings from(const SssdDomain& domain, const MachineFolder& folder);
};

/// A certificate of a private machine folder lies in it, or is shared with the machine that it runs on.
[[nodiscard]] std::string certificatePath(const MachineFolder& folder, const std::string& path);

} // namespace corvane::haldend
