#include "oracle/Judge.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "oracle/Reports.h"

namespace corvane::oracle {
namespace {

/// Held by one process at a time, until it goes.
class Lock {
public:
    explicit Lock(const std::string& path)
        : descriptor_(::open(path.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600)) {
        if (descriptor_ < 0 || ::flock(descriptor_, LOCK_EX) != 0)
            throw std::runtime_error(path + " can't be locked");
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { ::close(descriptor_); }

private:
    int descriptor_;
};

std::optional<std::string> contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

/// The report of that name, which `judge` makes where it isn't there yet. Another process that wants the same
/// one waits for it.
std::string remembered(const std::string& path, const std::function<std::string()>& judge) {
    const Lock lock(path + ".lock");
    if (auto known = contentOf(path)) return *known;
    auto report = judge();
    std::ofstream(path + ".new", std::ios::binary) << report;
    if (std::rename((path + ".new").c_str(), path.c_str()) != 0)
        throw std::runtime_error(path + " can't be written");
    return report;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const auto& part : parts)
        text += (text.empty() ? "" : " ") + part;
    return text.empty() ? "-" : text;
}

std::string lines(const char* manner, const Answers& answers) {
    std::ostringstream text;
    for (const auto& [question, answer] : answers)
        text << manner << ": " << question << ": asked " << joined(answer.asked) << ": " << answer.said
             << "\n";
    return text.str();
}

} // namespace

std::vector<std::string> parts(const std::string& text, char separator) {
    std::vector<std::string> all;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        all.push_back(part);
    return all;
}

bool SssdVerdict::serves(std::string_view domain) const {
    return std::ranges::find(domains, domain, &ServedDomain::name) != domains.end();
}

Judge::Judge(std::string programs, std::string verdicts, int settle)
    : programs_(std::move(programs)), verdicts_(std::move(verdicts)), settle_(settle) {}

NameVerdict Judge::names(const Files& machine) const {
    const auto files = filesOfNames(machine);
    return namesFrom(
        remembered(verdicts_ + "/names-" + keyOf(files), [&] { return nameReport(files, programs_); }));
}

SssdVerdict Judge::sssd(const Files& machine) const {
    const auto files = filesOfSssd(machine);
    return sssdFrom(
        remembered(verdicts_ + "/sssd-" + keyOf(files), [&] { return sssdReport(files, settle_); }));
}

std::string text(const NameVerdict& verdict) {
    return lines("all", verdict.all) + lines("sss-empty", verdict.sssEmpty) +
           lines("sss-down", verdict.sssDown) + lines("sss-empty-others-down", verdict.sssEmptyOthersDown) +
           lines("sss-down-others-down", verdict.sssDownOthersDown) +
           lines("sss-empty-others-busy", verdict.sssEmptyOthersBusy) +
           lines("sss-down-others-busy", verdict.sssDownOthersBusy);
}

std::string text(const SssdVerdict& verdict) {
    if (!verdict.starts) return "sssd: doesn't start: " + verdict.reason + "\n";
    std::string text = "sssd: starts\n";
    for (const auto& domain : verdict.domains)
        text += "sssd: serves " + domain.name + " (" + domain.provider +
                (domain.uri.empty() ? "" : " " + domain.uri) + ")\n";
    return text;
}

} // namespace corvane::oracle
