#pragma once

#include <string>

#include "util/ProcessLog.h"

namespace corvane::haldend {

/// Makes private machine folders: copies of what this user may read of a machine, to try changes on.
class MachineFolderMaker {
public:
    /// `source`: the machine to copy from, "/" for this one. `shareFolder`: the sample directory's templates.
    MachineFolderMaker(std::string source, std::string shareFolder, util::ProcessLog& log)
        : source_(std::move(source)), shareFolder_(std::move(shareFolder)), log_(log) {}

    /// Makes the folder unless it is there and holds something. It appears whole or not at all. Copied are
    /// passwd, group, nsswitch.conf, hostname, os-release and sssd.conf; what can't be read is left out, with
    /// a line in the log. A machine without a directory gets the section of a sample one (see
    /// `SampleDirectory`). True when it was made. Throws `halden::Exception` with cause and next step.
    bool makeIfMissing(const std::string& folder) const;

private:
    void copy(const std::string& target) const;

    std::string source_;
    std::string shareFolder_;
    util::ProcessLog& log_;
};

} // namespace corvane::haldend
