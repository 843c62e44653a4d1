#pragma once

#include <string>
#include <vector>

#include "oracle/Judge.h"

namespace corvane::oracle {

/// The parts of a text, an empty last one left out.
[[nodiscard]] std::vector<std::string> parts(const std::string& text, char separator);

/// What the C library reads of a machine's files, and what SSSD reads.
[[nodiscard]] Files filesOfNames(const Files& machine);
[[nodiscard]] Files filesOfSssd(const Files& machine);

/// The readers' reports, as they are remembered: lines with tabs. Throw `std::runtime_error`.
[[nodiscard]] std::string nameReport(const Files& files, const std::string& programs);
[[nodiscard]] std::string sssdReport(const Files& files, int settle);
[[nodiscard]] NameVerdict namesFrom(const std::string& report);
[[nodiscard]] SssdVerdict sssdFrom(const std::string& report);

} // namespace corvane::oracle
