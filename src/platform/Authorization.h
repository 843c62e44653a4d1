#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "util/AuthorizationExternalForm.h"

namespace corvane::platform {

/// One right asked for: its name and an optional value (always empty in this program).
struct AuthorizationItem {
    std::string name;
    std::string value;
    std::uint32_t flags = 0;
    friend bool operator==(const AuthorizationItem&, const AuthorizationItem&) = default;
};
/// Rights asked for together: all are granted or none.
using AuthorizationRights = std::vector<AuthorizationItem>;

namespace AuthorizationFlag {
inline constexpr std::uint32_t interactionAllowed = 1;
inline constexpr std::uint32_t extendRights = 2;
inline constexpr std::uint32_t preAuthorize = 16;
} // namespace AuthorizationFlag

/// The authorization service's own name for an authorization; 0 for none.
using AuthorizationRef = std::uint64_t;

/// Rights that the service has granted to this program. Shared by the lock control and the program.
/// Main thread; `obtainRights` blocks, with a dialogue where interaction is allowed.
class Authorization {
public:
    virtual ~Authorization() = default;
    /// True when all rights are held afterwards. Without `interactionAllowed` nobody is asked.
    [[nodiscard]] virtual bool obtainRights(const AuthorizationRights& rights, std::uint32_t flags) = 0;
    /// Why the last `obtainRights` was refused: cause and next step for people; "" after a grant or when the
    /// user gave up.
    [[nodiscard]] virtual std::string refusalReason() const = 0;
    /// Gives all rights back. External forms made before are worth nothing from here on.
    virtual void destroyRights() = 0;
    [[nodiscard]] virtual AuthorizationRef authorizationRef() const = 0;
};

/// The authorization service.
class AuthorizationService {
public:
    virtual ~AuthorizationService() = default;
    /// A new authorization that holds no rights yet. Null when the service can't be reached.
    [[nodiscard]] virtual std::shared_ptr<Authorization> createAuthorization() = 0;
    /// Writes the external form of an authorization. Status 0 on success; otherwise the form is unchanged.
    [[nodiscard]] virtual std::int32_t makeExternalForm(AuthorizationRef ref,
                                                        util::AuthorizationExternalForm& form) = 0;
};

} // namespace corvane::platform
