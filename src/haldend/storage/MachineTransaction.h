#pragma once

#include <sys/stat.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "haldend/storage/FileDescriptor.h"
#include "haldend/storage/FolderLock.h"
#include "haldend/storage/MachineFolder.h"
#include "haldend/storage/TransactionJournal.h"
#include "util/ProcessLog.h"

namespace corvane::haldend {

/// The one way in which files of a machine change: all of them or none.
///
/// Each new content is written under a temporary name beside its target, and so is the journal; all are
/// synced; the journal gets its name; the folders are synced; the files are renamed, and the folders synced
/// again; the journal is removed. While a part of the new contents isn't stored for good, a crash leaves the
/// old state (and leftovers that `recover` removes); from then on it leads to the new one. A file that is to
/// be removed is unlinked in place of the renaming. The last ten previous versions stay under
/// var/lib/corvane/generations, for root alone whatever the files' own modes: a directory's password may
/// be in them. The holder of the folder's lock makes one, and only one at a time. Any thread.
class MachineTransaction {
public:
    MachineTransaction(const MachineFolder& folder, const FolderLock& held);
    MachineTransaction(const MachineTransaction&) = delete;
    MachineTransaction& operator=(const MachineTransaction&) = delete;
    ~MachineTransaction();

    /// Puts one file on the list. An existing file keeps its owner, and its mode unless `forceMode`; a new
    /// one gets `mode`. `relative` is one of the `machineFile`s; links are followed to the file that is
    /// replaced.
    void replace(const std::string& relative, std::string content, mode_t mode, bool forceMode = false);
    /// Puts one file on the list that is to be removed; it is there. With `alsoFolder` the folder that held
    /// it is removed as well if nothing else is in it.
    void remove(const std::string& relative, bool alsoFolder);
    /// Changes all files on the list. Throws `Failure` with the old state in place; used once.
    void commit();

    /// Finishes or undoes what a crash has left. Needs no answers. A target that another program
    /// changed after the crash is left alone. Throws `Failure` when the folder can't be written.
    static void recover(const MachineFolder& folder, const FolderLock& held, util::ProcessLog& log);
    /// True when `recover` has something to do. Never throws.
    [[nodiscard]] static bool needsRecovery(const MachineFolder& folder);

private:
    struct File {
        std::string relative;
        std::string target; ///< absolute, after links
        std::string staged;
        std::optional<std::string> content; ///< none for a file that is to be removed
        mode_t mode;
        bool forceMode;
        std::optional<std::string> previous; ///< content before, none when the file is new
        struct stat status {};               ///< before, for a file that is to be removed
        bool alsoFolder = false;
    };

    [[nodiscard]] FileDescriptor stage(const File& file) const;
    /// Stages all files and the journal, and waits until all of them are stored.
    void stageAll() const;
    [[nodiscard]] FileDescriptor stageJournal() const;
    void enactJournal() const;
    [[nodiscard]] std::set<std::string> targetFolders() const;
    /// The previous versions, in a folder that isn't a generation yet; `part_` is its path.
    void beginGeneration();
    void renameAll();
    static void putInPlace(const File& file);
    static void putBack(const File& file);
    void undo(std::size_t renamed) const;
    void removeStaged() const noexcept;
    [[nodiscard]] std::string journalPath() const { return folder_.resolved(machineFile::journal); }

    const MachineFolder& folder_;
    std::vector<File> files_;
    mutable std::vector<std::string> madeFolders_; ///< by staging, the outermost first
    std::string part_;
};

} // namespace corvane::haldend
