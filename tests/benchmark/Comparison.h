#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace corvane::bench {

/// Prints the usual table, and behind it how the first of each group stands against the others of that group.
/// A name is "group/what".
class Comparison final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    struct Measured {
        std::string what;
        double milliseconds;
    };
    std::vector<std::string> groups_;
    std::map<std::string, std::vector<Measured>> measured_;
};

} // namespace corvane::bench
