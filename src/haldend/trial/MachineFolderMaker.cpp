#include "haldend/trial/MachineFolderMaker.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>

#include "haldend/files/SssdSnippets.h"
#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"
#include "haldend/storage/MachineFolder.h"
#include "haldend/trial/SampleDirectory.h"

namespace corvane::haldend {
namespace {

namespace fs = std::filesystem;

constexpr const char* plainNsswitch = "passwd: files\ngroup: files\nshadow: files\nhosts: files dns\n";

void write(const std::string& folder, const char* relative, const std::string& text, mode_t mode) {
    const auto path = folder + "/" + relative;
    std::error_code code;
    fs::create_directories(parentOf(path), code);
    if (code) throw storageFailure("make", parentOf(path), code.value());
    writeDurably(path, text, mode);
}

halden::Exception noMachine(const std::string& folder, const std::string& reason) {
    return halden::Exception({halden::ErrorCode::storage, folder + " isn't a machine folder.", reason,
                              "Name another one with --machine, or a new one, which is then made."});
}

/// One of the files that make a folder a machine, or one that can't be looked at: that is reported where it
/// matters.
bool holdsAMachine(const std::string& folder) {
    return std::ranges::any_of(std::array{machineFile::nsswitch, machineFile::passwd, machineFile::sssd},
                               [&](const char* file) {
                                   const auto path = folder + "/" + file;
                                   return ::access(path.c_str(), F_OK) == 0 || errno == EACCES;
                               });
}

/// False for an empty folder as well: room was made for a machine. Someone's other folder is
/// refused.
bool isThere(const std::string& folder) {
    std::error_code code;
    const auto status = fs::status(folder, code);
    if (status.type() == fs::file_type::not_found) return false;
    if (fs::exists(status) && !fs::is_directory(status))
        throw noMachine(folder,
                        "It is a file, and a machine folder is a folder laid out like a machine's root.");
    if (fs::is_empty(folder, code) && !code) return false;
    if (!holdsAMachine(folder))
        throw noMachine(folder, "It holds other things, and none of etc/nsswitch.conf, etc/passwd and "
                                "etc/sssd/sssd.conf.");
    return true;
}

} // namespace

bool MachineFolderMaker::makeIfMissing(const std::string& folder) const {
    std::error_code code;
    if (isThere(folder)) return false;
    auto part = fs::absolute(folder, code).lexically_normal().string();
    while (part.ends_with('/'))
        part.pop_back();
    const auto target = part;
    part += ".part-" + std::to_string(::getpid());
    try {
        fs::create_directories(part, code);
        if (code) throw storageFailure("make", part, code.value());
        ::chmod(part.c_str(), 0700);
        copy(part);
        renameFile(part, target);
        return true;
    } catch (const Failure& failure) {
        fs::remove_all(part, code);
        auto error = failure.error();
        error.description = "The machine folder " + target + " could not be made.";
        throw halden::Exception(error);
    } catch (...) {
        fs::remove_all(part, code);
        throw;
    }
}

void MachineFolderMaker::copy(const std::string& target) const {
    const MachineFolder source(source_);
    const auto readable = [&](const char* file) -> std::optional<std::string> {
        try {
            return source.read(file);
        } catch (const Failure& failure) {
            log_.log("the machine folder is made without " + source.pathOf(file) + ": " +
                     failure.error().reason);
            return std::nullopt;
        }
    };
    for (const auto* file :
         {machineFile::passwd, machineFile::group, machineFile::hostname, machineFile::osRelease})
        if (const auto text = readable(file)) write(target, file, *text, 0644);
    write(target, machineFile::nsswitch, readable(machineFile::nsswitch).value_or(plainNsswitch), 0644);
    auto sssd = readable(machineFile::sssd);
    const bool hasDirectory = sssd && ("\n" + *sssd).find("\n[domain/") != std::string::npos;
    if (!hasDirectory) sssd = SampleDirectory::sssdText(shareFolder_);
    write(target, machineFile::sssd, *sssd, 0600);
    if (!hasDirectory) return;
    for (const auto& snippet : SssdSnippets::of(source).read)
        write(target, (std::string(machineFile::sssdSnippets) + "/" + baseNameOf(snippet.path)).c_str(),
              snippet.text, 0600);
}

} // namespace corvane::haldend
