#pragma once

#include <string>
#include <vector>

#include "haldend/files/DomainsLine.h"
#include "haldend/files/SssdFile.h"
#include "haldend/files/SssdLines.h"

namespace corvane::haldend {

struct LdapServersRequest;

/// A directory without numbers seldom has home folders and shells for this system either, and SSSD then gives
/// its users empty ones. These are the options that such a section lacks: a home folder of the usual name,
/// and a shell, each unless the section or all of SSSD has something to say about it.
[[nodiscard]] std::vector<AddedOption> missingAccountDefaults(const SssdFile& sssd,
                                                              const std::string& server);

/// Adds them to the sections of servers that begin to compute numbers, notes that in `added`, and takes those
/// that it notes away again, where they still say the same, from servers that no longer do. What was removed
/// or renamed is followed in `added`. `before` is what `lines` said before the request.
void followInAccountDefaults(SssdLines& lines, const SssdFile& before, const LdapServersRequest& request,
                             std::vector<AddedOption>& added);

/// What SSSD gives a user whose directory says `home` and `shell`, either of which may be empty: "home
/// /home/alice, shell /bin/bash" for people. `options` are the section's.
[[nodiscard]] std::string homeAndShell(const SssdDomain& options, const std::string& user,
                                       const std::string& home, const std::string& shell);
/// The options of the section, and of all of SSSD where the section doesn't have them, that `homeAndShell`
/// needs.
void completeAccountOptions(SssdDomain& options, const SssdFile& sssd);

} // namespace corvane::haldend
