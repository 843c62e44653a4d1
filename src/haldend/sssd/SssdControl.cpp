#include "haldend/sssd/SssdControl.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <thread>
#include <vector>

#include "haldend/storage/ChildProcess.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

using namespace std::chrono_literals;

class NoSssdControl final : public SssdControl {
public:
    void filesChanged(SssdUse) override {}
};

/// A process by its number and the arguments that it was started with.
struct RunningProcess {
    pid_t number = 0;
    std::vector<std::string> arguments;
};

std::vector<std::string> splitAtNul(const std::string& text) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start < text.size();) {
        const auto end = std::min(text.find('\0', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

class LiveSssdControl final : public SssdControl {
public:
    LiveSssdControl(util::ProcessLog& log, StillWaiting stillWaiting)
        : log_(log), stillWaiting_(std::move(stillWaiting)) {}

    void filesChanged(SssdUse use) override {
        if (use == SssdUse::needed)
            restart(true);
        else if (use == SssdUse::changed)
            restart(false);
        else if (use == SssdUse::impossible && !hasSnippets())
            end();
        dropCaches();
    }

private:
    static bool hasSystemd() { return ::access("/run/systemd/system", F_OK) == 0; }

    /// Domains may be in files beside the main one; SSSD runs on with those.
    static bool hasSnippets() {
        std::error_code code;
        for (const auto& entry : std::filesystem::directory_iterator("/etc/sssd/conf.d", code))
            if (entry.path().extension() == ".conf") return true;
        return false;
    }

    /// With `start` also where it doesn't run yet.
    void restart(bool start) {
        if (hasSystemd())
            return run({"/usr/bin/systemctl", start ? "restart" : "try-restart", "sssd.service"});
        const auto process = runningSssd();
        if (process.number != 0) {
            if (stop(process.number)) run(process.arguments);
        } else if (start) {
            std::error_code ignored;
            std::filesystem::create_directories("/var/log/sssd", ignored);
            run({"/usr/sbin/sssd", "-D", "--logger=files"});
        }
    }

    void end() {
        if (hasSystemd()) return run({"/usr/bin/systemctl", "stop", "sssd.service"});
        if (const auto process = runningSssd(); process.number != 0) (void)stop(process.number);
    }

    /// The process named in SSSD's own file, if it is SSSD at all.
    static RunningProcess runningSssd() {
        const auto text = readQuietly("/run/sssd.pid");
        RunningProcess process;
        std::from_chars(text.data(), text.data() + text.size(), process.number);
        if (process.number <= 1) return {};
        const auto folder = "/proc/" + std::to_string(process.number);
        if (readQuietly(folder + "/comm") != "sssd\n") return {};
        process.arguments = splitAtNul(readQuietly(folder + "/cmdline"));
        if (process.arguments.empty()) return {};
        process.arguments.front() = "/usr/sbin/sssd"; // it may have been started by a relative name
        const auto isDaemon = [](const std::string& argument) {
            return argument == "-D" || argument == "--daemon";
        };
        if (std::ranges::none_of(process.arguments, isDaemon)) process.arguments.emplace_back("-D");
        std::erase(process.arguments, "-i");
        std::erase(process.arguments, "--interactive");
        return process;
    }

    bool stop(pid_t number) {
        if (::kill(number, SIGTERM) != 0) {
            log_.log(
                "the running SSSD could not be stopped for a restart: the program lacks the right to do so");
            return false;
        }
        for (int i = 0; i < 1000 && ::kill(number, 0) == 0; ++i) {
            if (hasEnded(number)) return true;
            stillWaiting_();
            std::this_thread::sleep_for(10ms);
        }
        if (::kill(number, 0) != 0 || hasEnded(number)) return true;
        log_.log("the running SSSD did not stop within ten seconds; it still uses the old settings");
        return false;
    }

    /// A process that has ended stays listed until its parent asks for it.
    static bool hasEnded(pid_t number) {
        const auto stat = readQuietly("/proc/" + std::to_string(number) + "/stat");
        const auto paren = stat.rfind(')');
        return paren == std::string::npos || stat.substr(paren, 3) == ") Z";
    }

    void dropCaches() {
        if (::access("/usr/sbin/sss_cache", X_OK) == 0) run({"/usr/sbin/sss_cache", "-E"});
    }

    void run(const std::vector<std::string>& arguments) {
        const auto outcome = runProcess(arguments, 60s, stillWaiting_);
        if (outcome.status == 0) return;
        std::string command;
        for (const auto& argument : arguments)
            command += (command.empty() ? "" : " ") + argument;
        log_.log("\"" + command + "\" failed with status " + std::to_string(outcome.status) + ": " +
                 outcome.output);
    }

    static std::string readQuietly(const std::string& path) {
        try {
            return readFile(path).value_or("");
        } catch (const Failure&) {
            return {};
        }
    }

    util::ProcessLog& log_;
    StillWaiting stillWaiting_;
};

} // namespace

std::unique_ptr<SssdControl> sssdControlFor(const MachineFolder& folder, util::ProcessLog& log,
                                            StillWaiting stillWaiting) {
    if (folder.isLiveMachine()) return std::make_unique<LiveSssdControl>(log, std::move(stillWaiting));
    return std::make_unique<NoSssdControl>();
}

} // namespace corvane::haldend
