#pragma once

#include <cstdint>

#include "util/AuthorizationExternalForm.h"

namespace corvane::auth {

/// Rights held on a remote server. Dropping the last reference destroys them there. Main thread.
class RemoteAuthorization {
public:
    virtual ~RemoteAuthorization() = default;
    /// Asks the server; blocks.
    [[nodiscard]] virtual bool haveAuthRights() = 0;
    /// Copies the form, all zero when none was obtained. Always 0.
    [[nodiscard]] virtual std::int32_t makeExternalForm(util::AuthorizationExternalForm& form) = 0;
};

} // namespace corvane::auth
