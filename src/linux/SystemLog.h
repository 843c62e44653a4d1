#pragma once

#include "util/ProcessLog.h"

namespace corvane::linux_ {

/// The journal where the process was started by it, else standard error with time and program name in front.
/// Any thread.
class SystemLog final : public util::ProcessLog {
public:
    SystemLog();
    void log(std::string_view line) override;

private:
    bool toJournal_;
};

} // namespace corvane::linux_
