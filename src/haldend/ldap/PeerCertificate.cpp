#include "haldend/ldap/PeerCertificate.h"

#include <arpa/inet.h>
#include <gnutls/x509.h>

#include <ctime>

#include "sdk/LdapServerCalls.h"

namespace corvane::haldend {
namespace {

namespace kind = sdk::ldap::failure;

class Certificate {
public:
    explicit Certificate(const gnutls_datum_t& encoded) {
        gnutls_x509_crt_init(&handle_);
        isRead_ = gnutls_x509_crt_import(handle_, &encoded, GNUTLS_X509_FMT_DER) == GNUTLS_E_SUCCESS;
    }
    Certificate(const Certificate&) = delete;
    Certificate& operator=(const Certificate&) = delete;
    ~Certificate() { gnutls_x509_crt_deinit(handle_); }

    [[nodiscard]] std::string subject() const { return isRead_ ? nameFrom(gnutls_x509_crt_get_dn3) : "?"; }
    [[nodiscard]] std::string issuer() const {
        return isRead_ ? nameFrom(gnutls_x509_crt_get_issuer_dn3) : "?";
    }
    [[nodiscard]] std::time_t begin() const { return gnutls_x509_crt_get_activation_time(handle_); }
    [[nodiscard]] std::time_t end() const { return gnutls_x509_crt_get_expiration_time(handle_); }
    [[nodiscard]] bool isValidAt(std::time_t now) const { return isRead_ && begin() <= now && now <= end(); }
    /// The hosts that it is made out for, as far as it lists them.
    [[nodiscard]] std::string hosts() const {
        std::string hosts;
        for (unsigned i = 0; isRead_; ++i) {
            char name[256];
            std::size_t length = sizeof name;
            const int type = gnutls_x509_crt_get_subject_alt_name(handle_, i, name, &length, nullptr);
            if (type < 0) break;
            char address[INET6_ADDRSTRLEN] = "";
            std::string host;
            if (type == GNUTLS_SAN_DNSNAME) host.assign(name, length);
            if (type == GNUTLS_SAN_IPADDRESS &&
                ::inet_ntop(length == 4 ? AF_INET : AF_INET6, name, address, sizeof address))
                host = address;
            if (!host.empty()) hosts += (hosts.empty() ? "" : ", ") + host;
        }
        return hosts;
    }

private:
    template <typename Getter>
    [[nodiscard]] std::string nameFrom(const Getter& getter) const {
        gnutls_datum_t text{nullptr, 0};
        if (getter(handle_, &text, 0U) != GNUTLS_E_SUCCESS) return "?";
        std::string name(reinterpret_cast<const char*>(text.data), text.size);
        gnutls_free(text.data);
        return name;
    }

    gnutls_x509_crt_t handle_ = nullptr;
    bool isRead_ = false;
};

std::string day(std::time_t time) {
    std::tm parts{};
    char text[32];
    gmtime_r(&time, &parts);
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M UTC", &parts)};
}

std::string described(const Certificate& certificate) {
    return "\"" + certificate.subject() + "\", issued by \"" + certificate.issuer() + "\"";
}

LdapFailure expired(const gnutls_datum_t* chain, unsigned count) {
    const auto now = std::time(nullptr);
    for (unsigned i = 0; i < count; ++i) {
        const Certificate one(chain[i]);
        if (one.isValidAt(now)) continue;
        const bool isEarly = one.begin() > now;
        return {kind::expired,
                isEarly ? "The server's certificate isn't valid yet."
                        : "The server's certificate has expired.",
                "The certificate " + described(one) + " is valid from " + day(one.begin()) + " to " +
                    day(one.end()) + "; this machine's clock says " + day(now) + ".",
                "Have the server's administrator renew the certificate, or correct this machine's clock."};
    }
    return {kind::expired, "A certificate of the server's authority is out of date.",
            "The server's own certificate is valid; one that vouches for it isn't.",
            "Have the authority's certificate renewed, here and on the server."};
}

LdapFailure wrongName(const Certificate& certificate, const std::string& host) {
    const auto hosts = certificate.hosts();
    return {kind::wrongName, "The server's certificate is made out for another host.",
            "It was reached as \"" + host + "\", and its certificate " + described(certificate) +
                (hosts.empty() ? " lists no host names." : " is made out for " + hosts + "."),
            "Enter the address that the certificate is made out for, or have a certificate made for \"" +
                host + "\"."};
}

LdapFailure untrusted(const Certificate& certificate, const std::string& authorities) {
    const bool isOwn = certificate.subject() == certificate.issuer();
    return {
        kind::untrusted, "The server's certificate isn't signed by an authority that is trusted here.",
        "The certificate " + described(certificate) +
            (isOwn ? " (so it vouches for itself)" : std::string()) + " was compared with " + authorities +
            ".",
        "Choose the file with the certificate of the authority that has signed it; get that file from the "
        "server's administrator, not from the server itself."};
}

} // namespace

std::optional<LdapFailure> objectionToPeer(gnutls_session_t session, const std::string& host,
                                           const std::string& authorities) {
    unsigned count = 0;
    const auto* chain = gnutls_certificate_get_peers(session, &count);
    if (!chain || count == 0)
        return LdapFailure{kind::tlsUnsupported, "The server has shown no certificate.",
                           "The encrypted connection to \"" + host +
                               "\" is established, but no certificate proves whose it is.",
                           "Have the server's administrator give it a certificate."};
    unsigned status = 0;
    const Certificate own(chain[0]);
    if (gnutls_certificate_verify_peers3(session, host.c_str(), &status) != GNUTLS_E_SUCCESS)
        return untrusted(own, authorities);
    if (status == 0) return std::nullopt;
    constexpr unsigned timeTroubles = GNUTLS_CERT_EXPIRED | GNUTLS_CERT_NOT_ACTIVATED;
    constexpr unsigned known = timeTroubles | GNUTLS_CERT_UNEXPECTED_OWNER | GNUTLS_CERT_INVALID;
    if ((status & ~known) != 0) return untrusted(own, authorities);
    if ((status & timeTroubles) != 0) return expired(chain, count);
    if ((status & GNUTLS_CERT_UNEXPECTED_OWNER) != 0) return wrongName(own, host);
    return untrusted(own, authorities);
}

std::string describedPeer(gnutls_session_t session) {
    unsigned count = 0;
    const auto* chain = gnutls_certificate_get_peers(session, &count);
    if (!chain || count == 0) return {};
    const Certificate own(chain[0]);
    return "Certificate " + described(own) + ", valid until " + day(own.end()) + ".";
}

} // namespace corvane::haldend
