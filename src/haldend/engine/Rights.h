#pragma once

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "util/AuthorizationExternalForm.h"

namespace corvane::haldend {

/// The right that every change of the directory configuration needs.
inline constexpr std::string_view configureRight = "system.services.directory.configure";
inline constexpr std::string_view preferencesRight = "system.preferences";

/// Who may change the machine, within one run of the service: authorizations, the rights that each holds and
/// the 32 random bytes by which each is known outside. Tokens are compared in constant time and wiped when
/// the authorization's rights are destroyed, when it is closed, and when this object is destroyed. Any
/// thread.
class Rights {
public:
    using Ref = std::uint64_t;
    using Names = std::set<std::string, std::less<>>;

    Rights() = default;
    Rights(const Rights&) = delete;
    Rights& operator=(const Rights&) = delete;

    /// A new authorization that holds nothing. Never 0.
    [[nodiscard]] Ref open();
    /// Unknown references are harmless here and below.
    void close(Ref ref);
    void grant(Ref ref, const Names& names);
    /// Takes all rights back; forms made before are worth nothing from here on.
    void destroy(Ref ref);
    [[nodiscard]] bool holds(Ref ref, const Names& names) const;

    /// Writes the authorization's token, minted on first use. False for an unknown reference, or when the
    /// system has no random bytes; the form is unchanged then.
    [[nodiscard]] bool externalForm(Ref ref, util::AuthorizationExternalForm& form);
    /// True when `form` is the token of an authorization that holds `right`.
    [[nodiscard]] bool permits(util::BytesView form, std::string_view right) const;

private:
    struct Entry {
        Names rights;
        util::AuthorizationExternalForm token; ///< wipes itself
        bool isMinted = false;
    };
    mutable std::mutex mutex_;
    std::map<Ref, Entry> entries_;
    Ref last_ = 0;
};

} // namespace corvane::haldend
