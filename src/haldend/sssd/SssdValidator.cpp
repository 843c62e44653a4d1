#include "haldend/sssd/SssdValidator.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

/// A folder that is removed with everything in it.
class PrivateFolder {
public:
    explicit PrivateFolder(const std::string& parent)
        : path_(parent + "/" + machineFile::checkPrefix + "XXXXXX") {
        if (!::mkdtemp(path_.data())) throw storageFailure("make", path_, errno);
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
};

/// The lines of a report that name a problem, as in "[rule/…]: …".
std::string problemsIn(const std::string& report) {
    std::istringstream lines(report);
    std::string problems;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with('[')) problems += line + "\n";
    return problems;
}

/// The folder has another name each time.
std::string without(std::string text, const std::string& part) {
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at))
        text.erase(at, part.size());
    return text;
}

std::string newLines(const std::string& found, const std::string& known) {
    std::istringstream lines(found);
    std::string result;
    for (std::string line; std::getline(lines, line);)
        if (("\n" + known).find("\n" + line + "\n") == std::string::npos) result += line + "\n";
    return result;
}

} // namespace

SssdValidator::SssdValidator(const MachineFolder& folder, util::ProcessLog& log, StillWaiting stillWaiting,
                             std::string tool)
    : folder_(folder), log_(log), stillWaiting_(std::move(stillWaiting)), tool_(std::move(tool)) {}

bool SssdValidator::isUsable() {
    const bool installed = ::access(tool_.c_str(), X_OK) == 0;
    if (installed && ::geteuid() == 0) return true;
    if (!saidSo_)
        log_.log(installed ? tool_ + " only works as root; sssd.conf is written without SSSD's own check"
                           : tool_ + " is not installed; sssd.conf is written without SSSD's own check");
    saidSo_ = true;
    return false;
}

std::string SssdValidator::findings(const std::string& text) const {
    const PrivateFolder folder(folder_.resolved(machineFile::state));
    const auto snippets = folder.path() + "/conf.d";
    const auto candidate = folder.path() + "/sssd.conf";
    ::mkdir(snippets.c_str(), 0700);
    writeDurably(candidate, text, 0600);
    const auto outcome = runProcess({tool_, "config-check", "-c", candidate, "-s", snippets},
                                    std::chrono::seconds(10), stillWaiting_);
    if (outcome.status == 0) return {};
    const auto output = without(outcome.output, folder.path() + "/");
    const auto problems = problemsIn(output);
    return problems.empty() ? "[sssctl] " + output + "\n" : problems;
}

void SssdValidator::check(const std::string& candidate, const std::string& current) {
    const bool isBlank = candidate.find_first_not_of(" \t\r\n") == std::string::npos;
    if (isBlank || !isUsable()) return; // with nothing in it SSSD isn't started at all
    const auto found = findings(candidate);
    if (found.empty()) return;
    const auto news = newLines(found, findings(current));
    if (news.empty()) return; // what was wrong before isn't this change's doing
    throw Failure(halden::ErrorCode::parameter,
                  "SSSD would not accept the changed configuration, so nothing was changed.",
                  tool_ + " says: " + news,
                  "Correct " + folder_.pathOf(machineFile::sssd) + " and try again.");
}

} // namespace corvane::haldend
