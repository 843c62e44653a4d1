#pragma once

#include <sys/types.h>

#include <atomic>
#include <future>
#include <memory>
#include <string>

#include "haldend/storage/MachineFolder.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// A small made-up company's directory: a private slapd on loopback that belongs to one machine folder, where
/// it keeps its data and finds its port. It runs as long as this object; a program that is killed takes it
/// along. Main thread: the server ends with the thread that started it. What takes time at its start is done
/// beside that thread.
class SampleDirectory {
public:
    /// The section of sssd.conf that is the sample directory.
    static constexpr const char* sectionName = "sample";

    /// Begins to start the server of the folder, after making its data when it has none yet; `proceed` goes
    /// on. `shareFolder` holds slapd.conf.in and one LDIF file. Null when the folder has no sample directory.
    /// `log` outlives this object.
    [[nodiscard]] static std::unique_ptr<SampleDirectory>
    begin(const std::string& machineFolder, const std::string& shareFolder, util::ProcessLog& log);
    /// To be called every few hundredths of a second until it is true: the server answers. Doesn't wait.
    /// Throws `halden::Exception` with cause and next step when the start has failed; it is over then.
    [[nodiscard]] bool proceed();
    /// Both of them, waiting until the server answers.
    [[nodiscard]] static std::unique_ptr<SampleDirectory>
    start(const std::string& machineFolder, const std::string& shareFolder, util::ProcessLog& log);
    SampleDirectory(const SampleDirectory&) = delete;
    SampleDirectory& operator=(const SampleDirectory&) = delete;
    /// Stops the server, be it ready or not, and waits for its end.
    ~SampleDirectory();

    /// "ldap://localhost:PORT", or with 127.0.0.1 on a machine that doesn't know the name. The server listens
    /// on 127.0.0.1 alone.
    [[nodiscard]] const std::string& uri() const { return uri_; }

    /// The lines of sssd.conf for a sample directory on a free port of loopback. Throws `halden::Exception`
    /// when the template in `shareFolder` can't be read.
    [[nodiscard]] static std::string sssdText(const std::string& shareFolder);

private:
    /// What comes after a step of the start.
    enum class Next { launch, nothing };

    SampleDirectory(const MachineFolder& folder, std::string shareFolder, std::string uri,
                    util::ProcessLog& log);
    void inTheBackground(Next (SampleDirectory::*step)());
    [[nodiscard]] bool isStepOver() const;
    // The steps; each throws `Failure`. Those that take time run beside the main thread, one at a time.
    [[nodiscard]] Next look();
    void prepare();
    void writeConfiguration() const;
    void load() const;
    void launch();
    [[nodiscard]] Next waitUntilItAnswers();
    [[nodiscard]] std::string complaint() const;

    std::string folder_; ///< configuration and data
    std::string shareFolder_;
    std::string uri_;
    util::ProcessLog& log_;
    bool runsElsewhere_ = false;
    pid_t server_ = -1;
    std::atomic<bool> isUnwanted_ = false;
    std::future<Next> step_; ///< invalid once the start is over
};

} // namespace corvane::haldend
