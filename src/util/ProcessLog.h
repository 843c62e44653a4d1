#pragma once

#include <string_view>

namespace corvane::util {

/// The log of this process. One call writes one line; the implementation adds time and program name.
/// Libraries are handed the log they write to; nothing logs through a global. Main thread.
class ProcessLog {
public:
    virtual ~ProcessLog() = default;
    virtual void log(std::string_view line) = 0;
};

} // namespace corvane::util
