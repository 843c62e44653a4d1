#include "haldend/EmbeddedAuthorizationService.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "haldend/storage/DurableFile.h"
#include "haldend/storage/Failure.h"

namespace corvane::haldend {
namespace {

/// The folder that a file lies in, or the nearest one above it that is there.
std::string existingFolderOf(const MachineFolder& folder, const char* file) {
    auto path = parentOf(folder.resolved(file));
    while (path.size() > folder.root().size() && ::access(path.c_str(), F_OK) != 0)
        path = parentOf(path);
    return path;
}

class EmbeddedAuthorization final : public platform::Authorization {
public:
    explicit EmbeddedAuthorization(std::shared_ptr<Engine> engine)
        : engine_(std::move(engine)), ref_(engine_->rights().open()) {}
    EmbeddedAuthorization(const EmbeddedAuthorization&) = delete;
    EmbeddedAuthorization& operator=(const EmbeddedAuthorization&) = delete;
    ~EmbeddedAuthorization() override { engine_->rights().close(ref_); }

    [[nodiscard]] bool obtainRights(const platform::AuthorizationRights& rights,
                                    std::uint32_t flags) override {
        Rights::Names names;
        for (const auto& right : rights)
            names.insert(right.name);
        refusal_ = refusalFor(names, flags);
        if (!refusal_.empty()) return false;
        engine_->rights().grant(ref_, names);
        return true;
    }
    [[nodiscard]] std::string refusalReason() const override { return refusal_; }
    void destroyRights() override { engine_->rights().destroy(ref_); }
    [[nodiscard]] platform::AuthorizationRef authorizationRef() const override { return ref_; }

private:
    [[nodiscard]] std::string refusalFor(const Rights::Names& names, std::uint32_t flags) const {
        if (engine_->rights().holds(ref_, names)) return {};
        if (!(flags & platform::AuthorizationFlag::interactionAllowed))
            return "You don't have this right, and prompting wasn't allowed. Open the lock to obtain it.";
        for (const auto& name : names)
            if (name != configureRight && name != preferencesRight)
                return "The right \"" + name + "\" is not known to this service. Ask for one that it knows.";
        return writeObstacle(engine_->machine().folder());
    }

    std::shared_ptr<Engine> engine_;
    platform::AuthorizationRef ref_;
    std::string refusal_;
};

} // namespace

std::string writeObstacle(const MachineFolder& folder) {
    try {
        for (const auto* file : {machineFile::nsswitch, machineFile::sssd, machineFile::policies}) {
            const auto path = existingFolderOf(folder, file);
            if (::faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
                const auto failure = storageFailure("write", path, errno);
                return failure.error().reason + "\n\n" + failure.error().recovery;
            }
        }
        return {};
    } catch (const Failure& failure) {
        return failure.error().reason + "\n\n" + failure.error().recovery;
    }
}

std::shared_ptr<platform::Authorization> EmbeddedAuthorizationService::createAuthorization() {
    return std::make_shared<EmbeddedAuthorization>(engine_);
}

std::int32_t EmbeddedAuthorizationService::makeExternalForm(platform::AuthorizationRef ref,
                                                            util::AuthorizationExternalForm& form) {
    return engine_->rights().externalForm(ref, form) ? 0 : 1;
}

} // namespace corvane::haldend
