#include "benchmark/Comparison.h"

#include <iomanip>

namespace corvane::bench {

void Comparison::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs) {
        if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
        const auto& name = run.run_name.function_name;
        const auto slash = name.find('/');
        const auto group = name.substr(0, slash);
        if (!measured_.contains(group)) groups_.push_back(group);
        measured_[group].push_back({name.substr(slash + 1), run.GetAdjustedRealTime()});
    }
}

void Comparison::Finalize() {
    ConsoleReporter::Finalize();
    auto& out = GetOutputStream();
    out << std::fixed << std::setprecision(2);
    for (const auto& group : groups_) {
        const auto& all = measured_[group];
        const auto& ours = all.front();
        out << "\n" << group << ": " << ours.what << " " << ours.milliseconds << " ms\n";
        for (std::size_t at = 1; at < all.size(); ++at)
            out << "    " << ours.milliseconds / all[at].milliseconds << " times " << all[at].what << " ("
                << all[at].milliseconds << " ms)\n";
    }
}

} // namespace corvane::bench
