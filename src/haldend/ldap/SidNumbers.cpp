#include "haldend/ldap/SidNumbers.h"

#include <charconv>

#include "haldend/ldap/LdapSchema.h"

extern "C" { // the header doesn't say so itself
#include <sss_idmap.h>
}

namespace corvane::haldend {
namespace {

// SSSD's own defaults.
constexpr std::uint32_t lowestDefault = 200'000;
constexpr std::uint32_t highestDefault = 2'000'200'000;
constexpr std::uint32_t rangeSizeDefault = 200'000;
constexpr int extraRangesDefault = 10;

std::uint32_t numberIn(const SssdDomain& section, const char* key, std::uint32_t fallback) {
    const auto text = section.option(key);
    std::uint32_t number = 0;
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    return status == std::errc() && end == text.data() + text.size() && number > 0 ? number : fallback;
}

} // namespace

void SidNumbers::Free::operator()(sss_idmap_ctx* context) const { (void)sss_idmap_free(context); }

SidNumbers::SidNumbers(const SssdDomain& section)
    : firstDomain_(section.option("ldap_idmap_default_domain_sid")),
      rangeSize_(numberIn(section, "ldap_idmap_range_size", rangeSizeDefault)) {
    if (isTrueOption(section.option("ldap_idmap_autorid_compat"))) return;
    sss_idmap_ctx* context = nullptr;
    if (sss_idmap_init(nullptr, nullptr, nullptr, &context) != IDMAP_SUCCESS) return;
    context_.reset(context);
    (void)sss_idmap_ctx_set_lower(context, numberIn(section, "ldap_idmap_range_min", lowestDefault));
    (void)sss_idmap_ctx_set_upper(context, numberIn(section, "ldap_idmap_range_max", highestDefault));
    (void)sss_idmap_ctx_set_rangesize(context, rangeSize_);
    (void)sss_idmap_ctx_set_extra_slice_init(
        context, static_cast<int>(numberIn(section, "ldap_idmap_helper_table_size", extraRangesDefault)));
}

SidNumbers::~SidNumbers() = default;

std::string SidNumbers::textOf(const std::string& sid) const {
    char* text = nullptr;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(sid.data());
    if (!context_ || sss_idmap_bin_sid_to_sid(context_.get(), bytes, sid.size(), &text) != IDMAP_SUCCESS)
        return {};
    std::string result = text;
    (void)sss_idmap_free_sid(context_.get(), text);
    return result;
}

std::optional<std::uint32_t> SidNumbers::numberOf(const std::string& sid) {
    return numberOfText(textOf(sid));
}

std::optional<std::uint32_t> SidNumbers::numberOf(const std::string& sid, std::uint32_t relative) {
    const auto text = textOf(sid);
    return numberOfText(text.substr(0, text.rfind('-') + 1) + std::to_string(relative));
}

std::optional<std::uint32_t> SidNumbers::numberOfText(const std::string& sid) {
    if (!context_ || sid.empty()) return std::nullopt;
    std::uint32_t number = 0;
    auto status = sss_idmap_sid_to_unix(context_.get(), sid.c_str(), &number);
    // SSSD, too, makes a domain known when its first account comes along.
    if (status == IDMAP_NO_DOMAIN && addDomain(sid.substr(0, sid.rfind('-'))))
        status = sss_idmap_sid_to_unix(context_.get(), sid.c_str(), &number);
    return status == IDMAP_SUCCESS ? std::make_optional(number) : std::nullopt;
}

bool SidNumbers::addDomain(const std::string& domain) {
    id_t place = domain == firstDomain_ ? 0 : static_cast<id_t>(-1); // -1: by the hash of the domain
    sss_idmap_range range{};
    if (sss_idmap_calculate_range(context_.get(), domain.c_str(), &place, &range) != IDMAP_SUCCESS)
        return false;
    return sss_idmap_add_auto_domain_ex(context_.get(), domain.c_str(), domain.c_str(), &range, nullptr, 0,
                                        false, nullptr, nullptr) == IDMAP_SUCCESS;
}

} // namespace corvane::haldend
