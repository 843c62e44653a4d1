#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <thread>
#include <vector>

#include "haldend/servers/LdapTestReport.h"

namespace corvane::haldend {

class LdapTest;
struct LdapTestPlan;

/// The tests of servers that are under way or whose end nobody has asked about yet. Main thread; each test
/// has a thread of its own, which ends within moments of being given up.
class LdapTestJobs {
public:
    static constexpr std::size_t maximumRunning = 4;
    static constexpr std::size_t maximumKept = 16;

    LdapTestJobs() = default;
    LdapTestJobs(const LdapTestJobs&) = delete;
    LdapTestJobs& operator=(const LdapTestJobs&) = delete;
    ~LdapTestJobs();

    /// Begins a test and returns its number. Ends that nobody has asked about are forgotten, the oldest
    /// first. Throws `Failure` when too many are under way.
    [[nodiscard]] std::int64_t start(const LdapTestPlan& plan);
    /// How far it is; the test is forgotten with its last report. Throws `Failure` for an unknown number.
    [[nodiscard]] LdapTestReport report(std::int64_t number);
    /// Gives up and forgets, at once; an unknown number is harmless.
    void cancel(std::int64_t number);

private:
    struct Job {
        std::shared_ptr<LdapTest> check;
        std::jthread thread;
    };
    void forget(std::map<std::int64_t, Job>::iterator job);
    void tidy();

    std::map<std::int64_t, Job> jobs_;
    std::vector<Job> ending_; ///< given up, their threads not yet through
    std::int64_t last_ = 0;
};

} // namespace corvane::haldend
