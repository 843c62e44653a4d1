#pragma once

#include <sys/types.h>

#include <memory>
#include <string>

#include "haldend/storage/MachineFolder.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// A small made-up company's directory: a private slapd on loopback that belongs to one machine folder, where
/// it keeps its data and finds its port. It runs as long as this object; a program that is killed takes it
/// along. Main thread: the server ends with the thread that started it.
class SampleDirectory {
public:
    /// The section of sssd.conf that stands for the sample directory.
    static constexpr const char* sectionName = "sample";

    /// Starts the server of the folder, after making its data when it has none yet, and waits until it
    /// answers. `shareFolder` holds slapd.conf.in and one LDIF file. Null when the folder has no sample
    /// directory. Throws `halden::Exception` with cause and next step.
    [[nodiscard]] static std::unique_ptr<SampleDirectory>
    start(const std::string& machineFolder, const std::string& shareFolder, util::ProcessLog& log);
    SampleDirectory(const SampleDirectory&) = delete;
    SampleDirectory& operator=(const SampleDirectory&) = delete;
    /// Stops the server and waits for its end.
    ~SampleDirectory();

    /// "ldap://localhost:PORT", or with 127.0.0.1 on a machine that doesn't know the name. The server listens
    /// on 127.0.0.1 alone.
    [[nodiscard]] const std::string& uri() const { return uri_; }

    /// The lines of sssd.conf for a sample directory on a free port of loopback. Throws `halden::Exception`
    /// when the template in `shareFolder` can't be read.
    [[nodiscard]] static std::string sssdText(const std::string& shareFolder);

private:
    SampleDirectory(const MachineFolder& folder, std::string shareFolder, std::string uri);
    void prepare();
    void writeConfiguration() const;
    void load() const;
    void launch();
    void waitUntilItAnswers();
    [[nodiscard]] std::string complaint() const;

    std::string folder_; ///< configuration and data
    std::string shareFolder_;
    std::string uri_;
    pid_t server_ = -1;
};

} // namespace corvane::haldend
