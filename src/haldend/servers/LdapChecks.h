#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <thread>
#include <vector>

#include "haldend/ldap/LdapCheckReport.h"

namespace corvane::haldend {

class LdapCheck;
struct LdapCheckPlan;

/// The tries of servers that are under way or whose end nobody has asked about yet. Main thread; each try
/// has a thread of its own, which ends within moments of being given up.
class LdapChecks {
public:
    static constexpr std::size_t maximumRunning = 4;
    static constexpr std::size_t maximumKept = 16;

    LdapChecks() = default;
    LdapChecks(const LdapChecks&) = delete;
    LdapChecks& operator=(const LdapChecks&) = delete;
    ~LdapChecks();

    /// Begins a try and gives its number. Ends that nobody has asked about are forgotten, the oldest first.
    /// Throws `Failure` when too many are under way.
    [[nodiscard]] std::int64_t start(const LdapCheckPlan& plan);
    /// How far it is; the try is forgotten with its last report. Throws `Failure` for an unknown number.
    [[nodiscard]] CheckReport report(std::int64_t number);
    /// Gives up and forgets, at once; an unknown number is harmless.
    void cancel(std::int64_t number);

private:
    struct Job {
        std::shared_ptr<LdapCheck> check;
        std::jthread thread;
    };
    void forget(std::map<std::int64_t, Job>::iterator job);
    void tidy();

    std::map<std::int64_t, Job> jobs_;
    std::vector<Job> ending_; ///< given up, their threads not yet through
    std::int64_t last_ = 0;
};

} // namespace corvane::haldend
