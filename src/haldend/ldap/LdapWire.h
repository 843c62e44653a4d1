#pragma once

#include <gnutls/gnutls.h>
#include <lber.h>

#include <chrono>
#include <stop_token>
#include <string>

#include "haldend/ldap/HostLookup.h"
#include "haldend/ldap/LdapTestReport.h"
#include "haldend/storage/FileDescriptor.h"

namespace corvane::haldend {

/// Whom an encrypted connection trusts.
struct WireTrust {
    std::string caFile, caFolder; ///< "" for the system's own authorities
    bool isDemanded = true;       ///< false: the certificate is looked at by nobody
};

/// A connection to one server, plain at first, encrypted from `encrypt` on, that the LDAP library reads and
/// writes through. The library's own connecting and encrypting can neither be interrupted nor say exactly
/// what went wrong; here every wait ends at its time limit, or within a few hundredths of a second after
/// `stop` is requested. One thread.
class LdapWire {
public:
    explicit LdapWire(std::stop_token stop) : stop_(std::move(stop)) {}
    LdapWire(const LdapWire&) = delete;
    LdapWire& operator=(const LdapWire&) = delete;
    ~LdapWire();

    /// Each throws `LdapTestFailure` or `Stopped`.
    void connect(const std::string& host, int port, std::chrono::seconds patience);
    void encrypt(const std::string& host, const WireTrust& trust, std::chrono::seconds patience);
    /// Waits a moment for the server to say something.
    void pause() const;

    [[nodiscard]] int socket() const { return socket_.number(); }
    /// "192.0.2.1, port 389", once connected.
    [[nodiscard]] const std::string& peer() const { return peer_; }
    /// For people, once encrypted.
    [[nodiscard]] std::string encryption() const;

    /// The hooks by which the LDAP library uses a wire, which is their argument.
    [[nodiscard]] static Sockbuf_IO* hooks();

private:
    using Time = std::chrono::steady_clock::time_point;
    [[nodiscard]] int tryAddress(const HostAddress& address, Time deadline);
    [[nodiscard]] bool waitFor(short events, Time deadline) const;
    void shakeHands(Time deadline);
    void loadAuthorities(const WireTrust& trust);
    [[nodiscard]] ber_slen_t read(void* buffer, ber_len_t length);
    [[nodiscard]] ber_slen_t write(const void* buffer, ber_len_t length);

    std::stop_token stop_;
    FileDescriptor socket_;
    std::string peer_;
    gnutls_session_t session_ = nullptr;
    gnutls_certificate_credentials_t credentials_ = nullptr;
    bool isEncrypted_ = false;
};

} // namespace corvane::haldend
