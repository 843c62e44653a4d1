#pragma once

#include <string>
#include <vector>

#include "haldend/files/SssdFile.h"
#include "haldend/storage/MachineFolder.h"

namespace corvane::haldend {

/// The files of the folder conf.d beside sssd.conf that SSSD reads, in the order in which it reads them.
struct SssdSnippets {
    std::vector<SssdSnippet> read;
    /// A sentence for each file that SSSD passes over, with the reason.
    std::vector<std::string> passedOver;

    /// Names end in ".conf" and don't begin with a dot; a file counts when its owner alone may read it, and
    /// that is root, or on a private folder whoever owns conf.d. Throws `Failure` when one of them can't be
    /// read.
    [[nodiscard]] static SssdSnippets of(const MachineFolder& folder);
    /// Distinguishes one state of all of them from another without reading them.
    [[nodiscard]] static FileStamp stamp(const MachineFolder& folder);
};

} // namespace corvane::haldend
