#include "haldend/servers/LdapTestJobs.h"

#include <algorithm>

#include "haldend/servers/LdapTest.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {

LdapTestJobs::~LdapTestJobs() {
    for (auto& [number, job] : jobs_)
        job.thread.request_stop();
    for (auto& job : ending_)
        job.thread.request_stop();
}

std::int64_t LdapTestJobs::start(const LdapTestPlan& plan) {
    tidy();
    const auto isRunning = [](const auto& entry) { return !entry.second.check->report().isFinished; };
    if (static_cast<std::size_t>(std::ranges::count_if(jobs_, isRunning)) + ending_.size() >= maximumRunning)
        throw Failure(halden::ErrorCode::parameter, "The server can't be tested now.",
                      std::to_string(maximumRunning) + " other servers are being tried already.",
                      "Wait until one of them is through, or cancel it.");
    auto check = std::make_shared<LdapTest>(plan);
    std::jthread thread([check](const std::stop_token& stop) { check->run(stop); });
    jobs_.emplace(++last_, Job{std::move(check), std::move(thread)});
    return last_;
}

LdapTestReport LdapTestJobs::report(std::int64_t number) {
    const auto found = jobs_.find(number);
    if (found == jobs_.end())
        throw Failure(halden::ErrorCode::parameter, "This server test no longer exists.",
                      "It was asked for number " + std::to_string(number) + ".", "Start it again.");
    auto report = found->second.check->report();
    if (report.isFinished) jobs_.erase(found);
    return report;
}

void LdapTestJobs::cancel(std::int64_t number) {
    if (const auto found = jobs_.find(number); found != jobs_.end()) forget(found);
    tidy();
}

void LdapTestJobs::forget(std::map<std::int64_t, Job>::iterator job) {
    job->second.thread.request_stop();
    ending_.push_back(std::move(job->second));
    jobs_.erase(job);
}

void LdapTestJobs::tidy() {
    std::erase_if(ending_, [](const auto& job) { return job.check->report().isFinished; });
    const auto isThrough = [](const auto& entry) { return entry.second.check->report().isFinished; };
    while (jobs_.size() >= maximumKept) {
        const auto oldest = std::ranges::find_if(jobs_, isThrough);
        if (oldest == jobs_.end()) return;
        jobs_.erase(oldest);
    }
}

} // namespace corvane::haldend
