#pragma once

#include <memory>
#include <string>

#include "haldend/engine/Engine.h"
#include "platform/Authorization.h"

namespace corvane::haldend {

/// Rights on the engine in this process: whoever may write the machine folder may change it. The two known
/// rights are granted with interaction allowed; nobody is asked, since the file system has decided already.
class EmbeddedAuthorizationService final : public platform::AuthorizationService {
public:
    explicit EmbeddedAuthorizationService(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}
    [[nodiscard]] std::shared_ptr<platform::Authorization> createAuthorization() override;
    /// Status 1 for an authorization that isn't known, or is known no more.
    [[nodiscard]] std::int32_t makeExternalForm(platform::AuthorizationRef ref,
                                                util::AuthorizationExternalForm& form) override;

private:
    std::shared_ptr<Engine> engine_;
};

/// Why this process may not change the folder: cause and next step; "" when it may.
[[nodiscard]] std::string writeObstacle(const MachineFolder& folder);

} // namespace corvane::haldend
