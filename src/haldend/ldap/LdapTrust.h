#pragma once

#include <string>

#include "haldend/files/SssdFile.h"
#include "haldend/storage/MachineFolder.h"

namespace corvane::haldend {

/// Whom an encrypted connection trusts.
struct LdapTrust {
    std::string caFile, caFolder; ///< "" for both: the authorities that the machine trusts anyway
    bool isDemanded = true;       ///< false: the certificate isn't looked at

    /// As the section's options say. `folder`: the machine that they belong to; a certificate of a private
    /// machine folder is in it, or is shared with the machine that it runs on.
    [[nodiscard]] static LdapTrust from(const SssdDomain& section, const MachineFolder& folder);
    /// Whose signatures count, for people.
    [[nodiscard]] std::string authorities() const;
};

/// What the LDAP library, and SSSD through it, trusts where a section says nothing: the file or folder that
/// ldap.conf names. Both "" where it names none that can be read.
[[nodiscard]] LdapTrust usualLdapTrust();

} // namespace corvane::haldend
