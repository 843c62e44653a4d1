#pragma once

#include <optional>
#include <string>
#include <vector>

#include "haldend/FolderLock.h"
#include "haldend/MachineFolder.h"
#include "haldend/TransactionJournal.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// The one way in which files of a machine change: all of them or none.
///
/// Each new content is written and synced under a temporary name beside its target; the journal is written
/// and synced; the files are renamed; the journal goes. Before the journal stands, a crash leaves the old
/// state (and leftovers that `recover` removes); from then on it leads to the new one. The last ten previous
/// versions stay under var/lib/corvane/generations. The holder of the folder's lock makes one, and only one
/// at a time. Any thread.
class MachineTransaction {
public:
    MachineTransaction(const MachineFolder& folder, const FolderLock& held);
    MachineTransaction(const MachineTransaction&) = delete;
    MachineTransaction& operator=(const MachineTransaction&) = delete;

    /// Puts one file on the list. An existing file keeps its owner, and its mode unless `forceMode`; a new
    /// one gets `mode`. `relative` is one of the `machineFile`s; links are followed to the file that is replaced.
    void replace(const std::string& relative, std::string content, mode_t mode, bool forceMode = false);
    /// Changes all files on the list. Throws `Failure` with the old state in place; used once.
    void commit();

    /// Finishes or undoes what a crash has left. Needs no answer from anybody. A target that another program
    /// changed after the crash is left alone. Throws `Failure` when the folder can't be written.
    static void recover(const MachineFolder& folder, const FolderLock& held, util::ProcessLog& log);
    /// True when `recover` has something to do. Never throws.
    [[nodiscard]] static bool needsRecovery(const MachineFolder& folder);

private:
    struct File {
        std::string relative;
        std::string target; ///< absolute, after links
        std::string staged;
        std::string content;
        mode_t mode;
        bool forceMode;
        std::optional<std::string> previous; ///< content before, none when the file is new
    };

    void stage(const File& file) const;
    void keepGeneration() const;
    void writeJournal() const;
    void renameAll();
    void undo(std::size_t renamed) const;
    void removeStaged() const noexcept;

    const MachineFolder& folder_;
    std::vector<File> files_;
};

} // namespace corvane::haldend
