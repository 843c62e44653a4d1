#include "haldend/MachineFolderMaker.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "haldend/DurableFile.h"
#include "haldend/Failure.h"
#include "haldend/MachineFolder.h"
#include "haldend/SampleDirectory.h"

namespace corvane::haldend {
namespace {

namespace fs = std::filesystem;

constexpr const char* plainNsswitch = "passwd: files\ngroup: files\nshadow: files\nhosts: files dns\n";

void write(const std::string& folder, const char* relative, const std::string& text, mode_t mode) {
    const auto path = folder + "/" + relative;
    std::error_code code;
    fs::create_directories(parentOf(path), code);
    if (code) throw storageFailure("make", parentOf(path), code.value());
    writeDurably(path, text, mode, nullptr);
}

/// False for an empty folder as well: somebody has made room for a machine.
bool isThere(const std::string& folder) {
    std::error_code code;
    const auto status = fs::status(folder, code);
    if (!fs::exists(status)) return false;
    if (!fs::is_directory(status))
        throw halden::Exception(
            {halden::ErrorCode::storage, folder + " is no machine folder.",
             "It is a file, and a machine folder is a folder laid out like a machine's root.",
             "Name another one with --machine, or a new one, which is then made."});
    const bool isEmpty = fs::is_empty(folder, code);
    return code || !isEmpty;
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
}

} // namespace corvane::haldend
