#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "haldend/records/FetchedRecord.h"
#include "haldend/storage/MachineFolder.h"

namespace corvane::haldend {

/// The users of a text in the form of /etc/passwd, one set of attributes each, in its order. Lines that are
/// no accounts (comments, inclusions of other sources, too few fields) are passed over. No password is read.
[[nodiscard]] std::vector<AttributeMap> usersIn(std::string_view passwd);
/// The groups of a text in the form of /etc/group.
[[nodiscard]] std::vector<AttributeMap> groupsIn(std::string_view group);
/// The users and groups of a machine's own files that a query looks for. Throws `Failure` when a file can't
/// be read; a missing file holds none.
[[nodiscard]] halden::RecordList accountRecords(const MachineFolder& folder,
                                                const halden::QueryParameters& parameters);
/// A value of a text in the form of os-release, without its quotes; "" when it isn't there.
[[nodiscard]] std::string osReleaseValue(std::string_view osRelease, std::string_view key);

} // namespace corvane::haldend
