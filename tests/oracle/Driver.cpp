#include "oracle/Driver.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <stdexcept>

#include "oracle/Namespaces.h"

namespace corvane::oracle {
namespace {

namespace fs = std::filesystem;

constexpr const char* prefix = "corvane-oracle.";

/// An open folder that nobody else holds; -1 when somebody does. It is held by every process that has it
/// open, and given up by the kernel when the last one ends.
int held(const std::string& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
    if (descriptor >= 0) ::close(descriptor);
    return -1;
}

bool isOld(const fs::path& folder) {
    std::error_code ignored;
    return fs::file_time_type::clock::now() - fs::last_write_time(folder, ignored) > std::chrono::minutes(1);
}

/// Folders that no run holds.
void sweep(const fs::path& parent) {
    for (const auto& entry : fs::directory_iterator(parent)) {
        if (!entry.path().filename().string().starts_with(prefix) || !isOld(entry.path())) continue;
        const int descriptor = held(entry.path());
        if (descriptor < 0) continue;
        std::error_code ignored;
        fs::remove_all(entry.path(), ignored);
        ::close(descriptor);
    }
}

std::string packed(const MachineReport& report) {
    return std::to_string(report.passed) + " " + std::to_string(report.failed) + "\n" + report.text;
}

MachineReport unpacked(const std::string& text, int status) {
    MachineReport report;
    const auto end = text.find('\n');
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0 && end != std::string::npos) {
        std::sscanf(text.c_str(), "%d %d", &report.passed, &report.failed);
        report.text = text.substr(end + 1);
        return report;
    }
    report.failed = 1;
    report.text = WIFSIGNALED(status) ? "  the process that worked it was ended by signal " +
                                            std::to_string(WTERMSIG(status)) + "\n"
                                      : "  the process that worked it said: " + text + "\n";
    return report;
}

} // namespace

RunFolder::RunFolder() {
    const auto parent = fs::temp_directory_path();
    sweep(parent);
    path_ = (parent / (prefix + std::string("XXXXXX"))).string();
    if (!::mkdtemp(path_.data())) throw std::runtime_error("no folder in " + parent.string());
    descriptor_ = held(path_);
}

RunFolder::~RunFolder() {
    std::error_code ignored;
    if (!isKept_) fs::remove_all(path_, ignored);
    ::close(descriptor_);
}

void RunFolder::keep() {
    const auto kept =
        (fs::path(path_).parent_path() / ("corvane-oracle-kept" + fs::path(path_).extension().string()));
    fs::rename(path_, kept);
    path_ = kept;
    isKept_ = true;
}

void Pool::start(const Machine& machine) {
    while (static_cast<int>(workers_.size()) >= jobs_)
        waitForOne();
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("no process");
    if (process > 0) {
        ::close(ends[1]);
        workers_.push_back({process, ends[0], machine});
        return;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    int status = 0;
    std::string text;
    try {
        text = packed(work_(machine));
    } catch (const std::exception& failure) {
        text = failure.what();
        status = 1;
    }
    for (std::size_t done = 0; done < text.size();) {
        const auto length = ::write(ends[1], text.data() + done, text.size() - done);
        if (length < 0) ::_exit(126);
        done += static_cast<std::size_t>(length);
    }
    ::_exit(status);
}

void Pool::waitForOne() {
    std::vector<pollfd> outputs;
    for (const auto& worker : workers_)
        outputs.push_back({worker.output, POLLIN, 0});
    ::poll(outputs.data(), outputs.size(), -1);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        if (outputs[i].revents == 0) continue;
        const auto worker = workers_[i];
        const auto text = readAll(worker.output); // it comes at the worker's end, and all of it
        ::close(worker.output);
        int status = 0;
        ::waitpid(worker.process, &status, 0);
        workers_.erase(workers_.begin() + static_cast<std::ptrdiff_t>(i));
        return done_(worker.machine, unpacked(text, status));
    }
}

void Pool::finish() {
    while (!workers_.empty())
        waitForOne();
}

} // namespace corvane::oracle
