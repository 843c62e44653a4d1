#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "haldend/files/SssdFile.h"

struct sss_idmap_ctx;

namespace corvane::haldend {

/// The numbers that SSSD computes from security identifiers where `ldap_id_mapping` is on: by SSSD's own
/// library, with the ranges that the section sets. One thread.
class SidNumbers {
public:
    explicit SidNumbers(const SssdDomain& section);
    ~SidNumbers();
    SidNumbers(const SidNumbers&) = delete;
    SidNumbers& operator=(const SidNumbers&) = delete;

    /// `sid`: in binary form, as directories store it. None where it isn't one of a domain, where the
    /// section's ranges have no room for it, and where they are handed out first come, first served
    /// (`ldap_idmap_autorid_compat`).
    [[nodiscard]] std::optional<std::uint32_t> numberOf(const std::string& sid);
    /// The same for another account of the domain that `sid` belongs to, as with a user's primary group.
    [[nodiscard]] std::optional<std::uint32_t> numberOf(const std::string& sid, std::uint32_t relative);

private:
    [[nodiscard]] std::string textOf(const std::string& sid) const;
    [[nodiscard]] std::optional<std::uint32_t> numberOfText(const std::string& sid);
    /// False where the domain has no range.
    [[nodiscard]] bool addDomain(const std::string& domain);

    struct Free {
        void operator()(sss_idmap_ctx* context) const;
    };
    std::unique_ptr<sss_idmap_ctx, Free> context_; ///< null where nothing can be computed
    std::string firstDomain_;                      ///< the one that SSSD gives the first range
    std::uint32_t rangeSize_ = 0;
};

} // namespace corvane::haldend
