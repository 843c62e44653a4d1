#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "halden/Node.h"

namespace corvane::directory {

/// The system administrator's account on the machine that is being configured. Main thread.
class RootUser {
public:
    struct Needs {
        virtual ~Needs() = default;
        /// Null when it can't be opened.
        [[nodiscard]] virtual std::shared_ptr<halden::Node> localHaldenNode() = 0;
    };
    explicit RootUser(Needs& needs) : needs_(needs) {}

    /// A record or value that can't be read counts as not there. `hasNoPassword`, when given, is set to
    /// whether the account has no usable password.
    [[nodiscard]] bool rootUserIsEnabled(bool* hasNoPassword);

private:
    [[nodiscard]] std::shared_ptr<halden::Record> fetchRecord(const std::vector<std::string>& attributes);
    Needs& needs_;
};

} // namespace corvane::directory
