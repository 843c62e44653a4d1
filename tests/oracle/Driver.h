#pragma once

#include <functional>
#include <string>
#include <vector>

#include "oracle/MachineTexts.h"

namespace corvane::oracle {

/// A folder of this run's own, removed at its end unless it is to be kept. Folders of runs that were killed
/// are removed by the next one.
class RunFolder {
public:
    RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;
    ~RunFolder();
    [[nodiscard]] const std::string& path() const { return path_; }
    /// It stays, under a name that no later run sweeps away.
    void keep();

private:
    std::string path_;
    int descriptor_ = -1; ///< by which other runs see that it is in use
    bool isKept_ = false;
};

/// What became of one machine.
struct MachineReport {
    int passed = 0;
    int failed = 0;
    std::string text; ///< a paragraph for each scene that failed
};

/// Works machines in processes of their own, several at a time, so that a crash ends only one of them.
class Pool {
public:
    /// `work` runs in the machine's own process. `done` hears of each in this one.
    using Work = std::function<MachineReport(const Machine&)>;
    using Done = std::function<void(const Machine&, const MachineReport&)>;
    Pool(int jobs, Work work, Done done) : jobs_(jobs), work_(std::move(work)), done_(std::move(done)) {}

    /// Waits for a free place first.
    void start(const Machine& machine);
    void finish();

private:
    struct Worker {
        pid_t process;
        int output;
        Machine machine;
    };
    void waitForOne();

    int jobs_;
    Work work_;
    Done done_;
    std::vector<Worker> workers_;
};

} // namespace corvane::oracle
