#include "haldend/storage/MachineTransaction.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>

#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"
#include "util/Bytes.h"

namespace corvane::haldend {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t generationsKept = 10;
/// The files that a transaction may hold; a journal that names another one isn't ours.
constexpr const char* changeableFiles[] = {machineFile::nsswitch, machineFile::sssd, machineFile::policies};
constexpr const char* stagedSuffix = ".corvane-new";
/// Of a folder that isn't a whole generation yet.
constexpr const char* partPrefix = "part-";

std::string stagedNameFor(const std::string& target) {
    return parentOf(target) + "/." + baseNameOf(target) + stagedSuffix;
}

std::vector<std::string> generationNames(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(folder, code))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

std::string numbered(unsigned long number) {
    const auto digits = std::to_string(number);
    return std::string(10 - std::min<std::size_t>(10, digits.size()), '0') + digits;
}

void removeOldGenerations(const std::string& folder) {
    auto names = generationNames(folder);
    std::error_code ignored;
    for (const auto& name : names)
        if (name.starts_with(partPrefix)) fs::remove_all(folder + "/" + name, ignored);
    std::erase_if(names, [](const auto& name) { return name.starts_with(partPrefix); });
    for (std::size_t i = 0; i + generationsKept < names.size(); ++i)
        fs::remove_all(folder + "/" + names[i], ignored);
}

bool sameAs(const std::string& path, const Fingerprint& fingerprint) {
    return Fingerprint::of(readFile(path)) == fingerprint;
}

void unlinkFile(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) throw storageFailure("remove", path, errno);
}

void redo(const MachineFolder& folder, const TransactionJournal::Entry& entry, util::ProcessLog& log) {
    const auto target = folder.resolved(entry.file);
    const auto staged = stagedNameFor(target);
    const auto current = Fingerprint::of(readFile(target));
    if (current == entry.after) {
        ::unlink(staged.c_str());
        return;
    }
    if (current == entry.before && !entry.after.present) {
        unlinkFile(target);
        syncParent(target);
        return;
    }
    if (current == entry.before && sameAs(staged, entry.after)) {
        renameFile(staged, target);
        syncParent(target);
        return;
    }
    log.log(target + " was changed by another program after an interrupted change; it is left as it is");
    ::unlink(staged.c_str());
}

/// The folders of a path that are missing, the outermost first.
std::vector<std::string> missingFolders(const std::string& path) {
    std::vector<std::string> missing;
    std::error_code code;
    for (auto folder = path; folder != "/" && !fs::exists(folder, code); folder = parentOf(folder))
        missing.insert(missing.begin(), folder);
    return missing;
}

/// Turns what a transaction has kept into a generation, once its files are in place. Nothing but the folder's
/// own mode guards them until then: they were the machine's files.
void finishGeneration(const std::string& part) {
    const auto folder = parentOf(part);
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(part, code))
        if (entry.hard_link_count(code) == 1) ::chmod(entry.path().c_str(), 0600);
    renameFile(part, folder + "/" + baseNameOf(part).substr(std::string(partPrefix).size()));
}

void finishGenerations(const std::string& folder) {
    for (const auto& name : generationNames(folder))
        if (name.starts_with(partPrefix)) finishGeneration(folder + "/" + name);
}

/// A link where that is safe: what is linked elsewhere as well, or can't be linked, is copied.
void keepPrevious(const std::string& target, const std::string& content, const std::string& kept) {
    struct stat status {};
    const bool isAlone =
        ::lstat(target.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1;
    if (isAlone && ::link(target.c_str(), kept.c_str()) == 0) return;
    (void)writeFile(kept, content, 0600);
}

/// True when the crash came before all new contents were stored, and so before the first renaming: each file
/// is as it was, and the new content of one is missing.
bool mustBeUndone(const MachineFolder& folder, const TransactionJournal& journal) {
    bool isIncomplete = false;
    for (const auto& entry : journal.entries) {
        const auto target = folder.resolved(entry.file);
        if (!sameAs(target, entry.before)) return false;
        if (entry.after.present && !sameAs(stagedNameFor(target), entry.after)) isIncomplete = true;
    }
    return isIncomplete;
}

bool isOurs(const TransactionJournal& journal) {
    return std::ranges::all_of(journal.entries, [](const auto& entry) {
        return std::ranges::find(changeableFiles, entry.file) != std::end(changeableFiles);
    });
}

/// Folders in which SSSD's own check was looking at a candidate when the process ended.
std::vector<std::string> abandonedChecks(const MachineFolder& folder) {
    std::vector<std::string> found;
    std::error_code code;
    for (const auto& entry : fs::directory_iterator(folder.resolved(machineFile::state), code))
        if (entry.path().filename().string().starts_with(machineFile::checkPrefix))
            found.push_back(entry.path());
    return found;
}

/// Staged files of a transaction that never reached its journal.
void removeLeftovers(const MachineFolder& folder) {
    for (const auto* file : changeableFiles)
        ::unlink(stagedNameFor(folder.resolved(file)).c_str());
    ::unlink(stagedNameFor(folder.resolved(machineFile::journal)).c_str());
    std::error_code ignored;
    for (const auto& check : abandonedChecks(folder))
        fs::remove_all(check, ignored);
    removeOldGenerations(folder.resolved(machineFile::generations));
}

} // namespace

MachineTransaction::MachineTransaction(const MachineFolder& folder, const FolderLock&) : folder_(folder) {}

void MachineTransaction::replace(const std::string& relative, std::string content, mode_t mode,
                                 bool forceMode) {
    const auto target = folder_.resolved(relative);
    files_.push_back({relative,
                      target,
                      stagedNameFor(target),
                      std::move(content),
                      mode,
                      forceMode,
                      readFile(target),
                      {},
                      false});
}

void MachineTransaction::remove(const std::string& relative, bool alsoFolder) {
    const auto target = folder_.resolved(relative);
    struct stat status {};
    if (::stat(target.c_str(), &status) != 0) throw storageFailure("remove", target, errno);
    files_.push_back({relative, target, stagedNameFor(target), std::nullopt, status.st_mode & 07777U, false,
                      readFile(target), status, alsoFolder});
}

MachineTransaction::~MachineTransaction() {
    for (auto& file : files_) {
        if (file.content) util::wipe(*file.content);
        if (file.previous) util::wipe(*file.previous);
    }
}

void MachineTransaction::commit() {
    try {
        stageAll();
        beginGeneration();
        enactJournal();
    } catch (...) {
        removeStaged();
        throw;
    }
    renameAll();
    finishGeneration(part_);
    ::unlink(journalPath().c_str()); // one that a crash brings back finds its work done
    for (const auto& file : files_)
        if (file.alsoFolder) ::rmdir(parentOf(file.target).c_str()); // stays while others have files there
    removeOldGenerations(folder_.resolved(machineFile::generations));
}

void MachineTransaction::stageAll() const {
    std::vector<std::pair<FileDescriptor, std::string>> written;
    for (const auto& file : files_)
        if (file.content) written.emplace_back(stage(file), file.staged);
    written.emplace_back(stageJournal(), stagedNameFor(journalPath()));
    for (const auto& [file, path] : written)
        syncFile(file, path);
}

FileDescriptor MachineTransaction::stage(const File& file) const {
    std::error_code code;
    for (auto& folder : missingFolders(parentOf(file.target)))
        madeFolders_.push_back(std::move(folder));
    fs::create_directories(parentOf(file.target), code);
    if (code) throw storageFailure("make", parentOf(file.target), code.value());
    struct stat status {};
    const bool exists = ::stat(file.target.c_str(), &status) == 0;
    const mode_t mode = exists && !file.forceMode ? status.st_mode & 07777U : file.mode;
    return writeFile(file.staged, *file.content, mode,
                     exists ? std::make_optional(FileModel{file.target, status}) : std::nullopt);
}

void MachineTransaction::beginGeneration() {
    const auto folder = folder_.resolved(machineFile::generations);
    const auto names = generationNames(folder);
    const auto last = std::ranges::find_if(names.rbegin(), names.rend(),
                                           [](const auto& n) { return !n.starts_with(partPrefix); });
    part_ = folder + "/" + partPrefix +
            numbered(last == names.rend() ? 1 : std::strtoul(last->c_str(), nullptr, 10) + 1);
    std::error_code code;
    fs::create_directories(part_, code);
    if (code) throw storageFailure("make", part_, code.value());
    ::chmod(folder.c_str(), 0700); // the copies may hold passwords
    for (const auto& file : files_)
        if (file.previous) keepPrevious(file.target, *file.previous, part_ + "/" + baseNameOf(file.relative));
}

FileDescriptor MachineTransaction::stageJournal() const {
    TransactionJournal journal;
    for (const auto& file : files_)
        journal.entries.push_back(
            {file.relative, Fingerprint::of(file.previous), Fingerprint::of(file.content)});
    return writeFile(stagedNameFor(journalPath()), journal.text(), 0600);
}

/// From here on a crash leads to the new state.
void MachineTransaction::enactJournal() const {
    auto folders = targetFolders();
    folders.insert(parentOf(journalPath()));
    for (const auto& made : madeFolders_)
        folders.insert(parentOf(made));
    renameFile(stagedNameFor(journalPath()), journalPath());
    syncFolders(folders);
}

std::set<std::string> MachineTransaction::targetFolders() const {
    std::set<std::string> folders;
    for (const auto& file : files_)
        folders.insert(parentOf(file.target));
    return folders;
}

void MachineTransaction::renameAll() {
    std::size_t renamed = 0;
    try {
        for (; renamed < files_.size(); ++renamed)
            putInPlace(files_[renamed]);
        syncFolders(targetFolders());
    } catch (...) {
        undo(renamed);
        throw;
    }
}

void MachineTransaction::putInPlace(const File& file) {
    if (file.content)
        renameFile(file.staged, file.target);
    else
        unlinkFile(file.target);
}

void MachineTransaction::putBack(const File& file) {
    struct stat status {};
    if (!file.previous) {
        ::unlink(file.target.c_str());
        return;
    }
    if (!file.content)
        status = file.status;
    else if (::stat(file.target.c_str(), &status) != 0)
        return;
    writeDurably(file.staged, *file.previous, status.st_mode & 07777U,
                 FileModel{file.content ? file.target : std::string(), status});
    renameFile(file.staged, file.target);
}

void MachineTransaction::undo(std::size_t renamed) const {
    for (std::size_t i = 0; i < renamed; ++i)
        putBack(files_[i]);
    removeStaged();
}

void MachineTransaction::removeStaged() const noexcept {
    std::error_code ignored;
    if (!part_.empty()) fs::remove_all(part_, ignored);
    ::unlink(journalPath().c_str());
    ::unlink(stagedNameFor(journalPath()).c_str());
    for (const auto& file : files_)
        ::unlink(file.staged.c_str());
    for (auto folder = madeFolders_.rbegin(); folder != madeFolders_.rend(); ++folder)
        ::rmdir(folder->c_str());
}

void MachineTransaction::recover(const MachineFolder& folder, const FolderLock&, util::ProcessLog& log) {
    const auto path = folder.resolved(machineFile::journal);
    const auto text = readFile(path);
    if (!text) return removeLeftovers(folder);
    const auto journal = TransactionJournal::fromText(*text);
    if (!journal || !isOurs(*journal)) {
        log.log(path + " isn't a journal of this service; it is kept as " + path + ".damaged");
        renameFile(path, path + ".damaged");
        return removeLeftovers(folder);
    }
    const bool isUndone = mustBeUndone(folder, *journal);
    for (const auto& entry : journal->entries)
        if (!isUndone) redo(folder, entry, log);
    if (!isUndone) finishGenerations(folder.resolved(machineFile::generations));
    if (::unlink(path.c_str()) != 0) throw storageFailure("remove", path, errno);
    syncParent(path);
    log.log("an interrupted change of " + folder.root() + (isUndone ? " was undone" : " was finished"));
    removeLeftovers(folder);
}

bool MachineTransaction::needsRecovery(const MachineFolder& folder) {
    try {
        const auto exists = [](const std::string& path) { return ::access(path.c_str(), F_OK) == 0; };
        if (exists(folder.resolved(machineFile::journal))) return true;
        if (exists(stagedNameFor(folder.resolved(machineFile::journal))) || !abandonedChecks(folder).empty())
            return true;
        return std::ranges::any_of(
            changeableFiles, [&](const char* file) { return exists(stagedNameFor(folder.resolved(file))); });
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace corvane::haldend
